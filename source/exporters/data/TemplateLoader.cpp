#include "TemplateLoader.h"

#include "Error.h"
#include "TemplateCheck.h"

#include <grantlee/template.h>

#include <QFile>
#include <QFileInfo>

#include <cstdlib>

namespace {

constexpr qint64 maxTemplateBytes = 1 << 20;

/// Templates that include each other without an end would use up the stack; those that mean well nest a few
/// deep.
constexpr std::ptrdiff_t maxStackBytes = 512 << 10;

const char* stackPlace() { return static_cast<const char*>(__builtin_frame_address(0)); }

[[noreturn]] void refuse(const QString& name, const QString& reason) {
    throw Error(Error::Exporter, QStringLiteral("Failed to init exporter template %1: %2").arg(name, reason));
}

} // namespace

TemplateLoader::TemplateLoader(const QString& directory) : m_directory(directory), m_stackBase(stackPlace()) {
    setTemplateDirs({directory});
}

Grantlee::Template TemplateLoader::loadByName(const QString& name, const Grantlee::Engine* engine) const {
    if (std::abs(stackPlace() - m_stackBase) > maxStackBytes)
        refuse(name, QStringLiteral("Templates include each other too deep"));
    if (!m_checked.contains(name)) {
        QFile file(m_directory + QLatin1Char('/') + name);
        if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly)) {
            if (file.size() > maxTemplateBytes)
                refuse(name, QStringLiteral("The file is larger than %1 bytes").arg(maxTemplateBytes));
            const QString fault = templateFault(QString::fromUtf8(file.readAll()));
            if (!fault.isEmpty())
                refuse(name, fault);
        }
        m_checked.insert(name);
    }
    return FileSystemTemplateLoader::loadByName(name, engine);
}
