#include "TemplateOutput.h"

#include <grantlee/exception.h>

#include <exception>

TemplateOutput::TemplateOutput(QIODevice& target, qint64 maxBytes, QDeadlineTimer deadline)
    : m_target(target), m_left(maxBytes), m_deadline(deadline) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 TemplateOutput::readData(char*, qint64) { return -1; }

qint64 TemplateOutput::writeData(const char* data, qint64 size) {
    // A stream that is taken down while an exception passes through writes once more, and a second one would
    // end the program.
    if (m_stopped || std::uncaught_exceptions() > 0)
        return -1;
    if (size > m_left)
        stop(QStringLiteral("The output is too large"));
    if (m_deadline.hasExpired())
        stop(QStringLiteral("The rendering takes too long"));
    if (m_target.write(data, size) != size)
        stop(m_target.errorString());
    m_left -= size;
    return size;
}

void TemplateOutput::stop(const QString& reason) {
    m_stopped = true;
    throw Grantlee::Exception(Grantlee::TagSyntaxError, reason);
}
