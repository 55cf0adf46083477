#include "Error.h"
#include "PlistReader.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    try {
        PlistReader::read(buffer);
    } catch (const Error&) {
        // Refused in an orderly way.
    }
    return 0;
}
