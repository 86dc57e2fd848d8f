# What every target of this project is built with. Nothing here reaches a parent project or a user.

include(CheckCXXCompilerFlag)

function(tarn_target target)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 $<$<BOOL:${TARN_WERROR}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow $<$<BOOL:${TARN_WERROR}>:-Werror>)
  endif()
endfunction()

# Checks that cost next to nothing, in optimised builds of the library.
function(tarn_harden target)
  if(MSVC)
    return()
  endif()
  set(optimised "$<NOT:$<CONFIG:Debug>>")
  target_compile_definitions(${target} PRIVATE "$<${optimised}:_GLIBCXX_ASSERTIONS>")
  foreach(option IN ITEMS -fcf-protection -fstack-clash-protection)
    string(MAKE_C_IDENTIFIER "TARN_HAS${option}" has)
    check_cxx_compiler_flag("${option} -Werror" ${has})
    if(${has})
      target_compile_options(${target} PRIVATE "$<${optimised}:${option}>")
    endif()
  endforeach()
  target_compile_options(${target} PRIVATE
    "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>" "$<${optimised}:-fstack-protector-strong>")
  if(NOT WIN32)
    target_link_options(${target} PRIVATE "$<${optimised}:LINKER:-z,relro,-z,now,-z,noexecstack>")
  else()
    target_link_libraries(${target} PRIVATE "$<${optimised}:ssp>")
  endif()
endfunction()
