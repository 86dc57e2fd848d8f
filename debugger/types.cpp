// Compilers describe a class with virtual functions where its virtual table is. This is compiled with debug information
// even where the library's other sources are not, so that debuggers know these classes then, too.
#include "Tarn/DataStructures/PartialProgress.h"

[[gnu::used]] static Tarn::DataStructures::PartialProgress* types;
