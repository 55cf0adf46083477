#include "ReadPicture.h"
#include "TiffReader.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    return readPicture(data, size, [](QIODevice& device) { return readTiff(device, QString()); });
}
