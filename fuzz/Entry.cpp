#include "fuzz/Input.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz(Input(std::string_view(reinterpret_cast<const char*>(data), size)));
  return 0;
}
