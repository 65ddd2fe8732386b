#pragma once

#include <QString>
#include <stdexcept>

namespace ADODB {

/// The one error type of data access. Raised by every failed open, prepare or
/// statement, and by a value that does not fit where it is going; what() and
/// Texto() carry the database's own text (or ours, for a value that does not fit).
/// Nothing in the program catches it: the error report at the top shows it.
class ErrorBD : public std::runtime_error {
  public:
    explicit ErrorBD(const QString &texto);
    QString Texto() const { return QString::fromUtf8(what()); }
};

} // namespace ADODB
