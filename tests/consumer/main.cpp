// A program of someone who uses the library.
#include <Tarn/Tarn.h>

using namespace Tarn;

int main() {
  static_assert(TARN_VERSION_MAJOR == 2);
  std::string buffer;
  buffer << uuids::uuid() << '\n' << StringMap{{"name", "north"}} << Time();
  StringMap properties;
  uuids::uuid id = uuids::uuid::generate();
  buffer >> id >> properties;
  return id.is_nil() && properties.at("name") == "north" && DataStructures::KeyTable().getNumElements() == 0 ? 0 : 1;
}
