#pragma once

#include <QApplication>

/// The platform's standard error report. An error that nothing catches, from any event the
/// program handles, ends here: its own text goes to standard error and to a message box
/// titled with the program's title, and the process ends with status 1.
class AplicacionTarifas : public QApplication {
    Q_OBJECT
public:
    AplicacionTarifas(int &argc, char **argv);
    bool notify(QObject *receptor, QEvent *evento) override;
};

/// Shows `texto` as the error report and ends the process with status 1.
[[noreturn]] void InformeError(const QString &texto);
