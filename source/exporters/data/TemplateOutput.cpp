#include "TemplateOutput.h"

#include <grantlee/exception.h>

TemplateOutput::TemplateOutput(QIODevice& target, qint64 maxBytes) : m_target(target), m_left(maxBytes) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 TemplateOutput::readData(char*, qint64) { return -1; }

qint64 TemplateOutput::writeData(const char* data, qint64 size) {
    // A stream that is taken down while the exception passes through writes once more.
    if (m_stopped)
        return -1;
    if (size > m_left)
        stop(QStringLiteral("The output is too large"));
    if (m_target.write(data, size) != size)
        stop(m_target.errorString());
    m_left -= size;
    return size;
}

void TemplateOutput::stop(const QString& reason) {
    m_stopped = true;
    throw Grantlee::Exception(Grantlee::TagSyntaxError, reason);
}
