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

TemplateLoader::TemplateLoader(const QString& directory, QDeadlineTimer deadline)
    : m_directory(directory), m_deadline(deadline), m_stackBase(stackPlace()) {
    setTemplateDirs({directory});
}

Grantlee::Template TemplateLoader::loadByName(const QString& name, const Grantlee::Engine* engine) const {
    if (std::abs(stackPlace() - m_stackBase) > maxStackBytes)
        refuse(name, QStringLiteral("Templates include each other too deep"));
    if (m_deadline.hasExpired())
        refuse(name, QStringLiteral("The rendering takes too long"));
    if (!m_checked.contains(name)) {
        check(name);
        m_checked.insert(name);
    }
    return FileSystemTemplateLoader::loadByName(name, engine);
}

bool TemplateLoader::canLoadTemplate(const QString& name) const {
    const QFileInfo info(m_directory + QLatin1Char('/') + name);
    // To the library a folder beside this one whose name begins with this one's is a part of it, and it opens
    // what is no file, which for a pipe is to wait.
    const QString folder = QFileInfo(m_directory).canonicalFilePath() + QLatin1Char('/');
    return info.isFile() && info.canonicalFilePath().startsWith(folder) &&
           FileSystemTemplateLoader::canLoadTemplate(name);
}

void TemplateLoader::check(const QString& name) const {
    QFile file(m_directory + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (file.size() > maxTemplateBytes)
        refuse(name, QStringLiteral("The file is larger than %1 bytes").arg(maxTemplateBytes));
    const QString fault = templateFault(QString::fromUtf8(file.readAll()));
    if (!fault.isEmpty())
        refuse(name, fault);
}
