# Debuggers show this library's values as people write them, whoever builds it. Nothing of this reaches the program.

# GDB looks for a script of this name beside each shared library that it loads.
if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
  file(GENERATE OUTPUT "$<TARGET_FILE:TarnDataStructures>-gdb.py" INPUT "${PROJECT_SOURCE_DIR}/debugger/printers.py")
endif()

# Visual Studio takes its description from the sources of the target that links the library.
set(natvis "TarnDataStructures.natvis")
set(natvis_dir "share/tarn-datastructures")
set(is_msvc "$<CXX_COMPILER_ID:MSVC>")
target_sources(TarnDataStructures INTERFACE
  "$<BUILD_INTERFACE:$<${is_msvc}:${PROJECT_SOURCE_DIR}/debugger/${natvis}>>"
  "$<INSTALL_INTERFACE:$<${is_msvc}:$<INSTALL_PREFIX>/${natvis_dir}/${natvis}>>")

# Only the library knows its classes that have virtual functions: it describes them, built with debug information or not.
if(BUILD_SHARED_LIBS AND NOT MSVC AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(types "${PROJECT_SOURCE_DIR}/debugger/types.cpp")
  target_sources(TarnDataStructures PRIVATE "${types}")
  set(describe -g -gz "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
      $<IF:$<CXX_COMPILER_ID:Clang>,-fstandalone-debug,-femit-class-debug-always>)
  set_source_files_properties("${types}" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON COMPILE_OPTIONS "${describe}")
endif()
