// The reader of project files: whatever the bytes are, it gives an object or throws.

#include "Error.h"
#include "GSerializableReader.h"
#include "Settings.h"

#include <QBuffer>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    try {
        const GSerializableReader reader(buffer, QDir(QStringLiteral("/base")));
        const std::unique_ptr<QObject> object = reader.readObject();
        if (const auto* settings = qobject_cast<const Settings*>(object.get()))
            settings->toXml();
    } catch (const Error&) {
        // Refused, as it should be.
    }
    return 0;
}
