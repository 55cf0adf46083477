#pragma once

#include <QByteArray>

/// What the optimiser says about its work: a stream of text, of which each complete line goes to the
/// toolkit's debug channel. It never reaches the user.
class PngLog {
public:
    ~PngLog();

    void print(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    QByteArray m_line;
};
