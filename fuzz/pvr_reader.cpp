// The three containers of PVR textures, each by its first bytes.

#include "PvrReader.h"
#include "ReadPicture.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size > 0 && data[0] == 'C')
        return readPicture(data, size, readPvrCcz);
    if (size > 0 && data[0] == 0x1F)
        return readPicture(data, size, readPvrGz);
    return readPicture(data, size, readPvr);
}
