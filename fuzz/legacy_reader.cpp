// The reader of first-generation projects: whatever the bytes are, it gives settings or throws, and takes
// memory by the bytes that are there, not by the lengths that they claim.

#include "DataFormats.h"
#include "Error.h"
#include "LegacyProject.h"
#include "Settings.h"

namespace {

/// Knows the default format only, so that both ways are walked.
struct FuzzFormats : DataFormats {
    std::optional<DataFormat> findFormat(const QString& name) const override {
        if (name == QLatin1String("cocos2d"))
            return DataFormat{name, true, true, true, true};
        return std::nullopt;
    }
    QStringList formatIds() const override { return {QStringLiteral("cocos2d")}; }
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static const FuzzFormats formats;
    DataFormats::setInstance(&formats);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    try {
        parseLegacyProject(bytes, QStringLiteral("/base/project.svs"))->toXml();
    } catch (const Error&) {
        // Refused, as it should be.
    }
    return 0;
}
