#pragma once

#include <QException>

/// A value, or a pair of begin and end, that a setter of the PNG optimiser can't take.
/// (QtConcurrent::Exception is the older name of its base.)
template <class T>
class IncorrectRange : public QException {
public:
    explicit IncorrectRange(const T& value) : m_value(value) {}

    const T& value() const { return m_value; }
    const char* what() const noexcept override { return "Incorrect range"; }

    void raise() const override { throw *this; }
    IncorrectRange* clone() const override { return new IncorrectRange(*this); }

private:
    T m_value;
};
