// A fuzzer of the property that the build names.
#include "tests/properties/Properties.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  TARN_PROPERTY(Input(std::string_view(reinterpret_cast<const char*>(data), size)));
  return 0;
}
