#pragma once

#include <QDeadlineTimer>
#include <QIODevice>

/// Hands what a template prints on to a file, and stops the rendering where it stands once that fails: a
/// template on its own never looks at its output, and a loop without an end would fill the disk. The stop is
/// an exception of the template library, which its renderer turns into the template's error.
class TemplateOutput : public QIODevice {
public:
    /// `target` is open and stays until this object is gone. More than `maxBytes` of output, and output
    /// behind the deadline, are too much.
    TemplateOutput(QIODevice& target, qint64 maxBytes, QDeadlineTimer deadline);

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    [[noreturn]] void stop(const QString& reason);

    QIODevice& m_target;
    qint64 m_left;
    QDeadlineTimer m_deadline;
    bool m_stopped = false;
};
