#pragma once

#include <QApplication>

namespace Pantalla {

/// The application object. Its notify is the last resort of the error report: an error that
/// escapes every handler boundary (Form::Atender) is shown there and ends the program cleanly,
/// with status 1, instead of unwinding through Qt's event frames.
class AplicacionTarifas : public QApplication {
    Q_OBJECT
  public:
    AplicacionTarifas(int &argc, char **argv);
    bool notify(QObject *receptor, QEvent *evento) override;
};

/// The platform's standard error report: `texto`, the error's own text, goes to standard error
/// and to a message box titled with the program's title, and the program goes on; whether it
/// then ends is the caller's decision (see Form::Atender).
void MostrarError(const QString &texto);

} // namespace Pantalla
