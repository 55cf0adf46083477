#include "ReadPicture.h"
#include "TgaFormat.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    return readPicture(data, size, readTga);
}
