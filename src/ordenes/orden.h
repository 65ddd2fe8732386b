#pragma once

#include "motor/contexto.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <memory>
#include <optional>

namespace Ordenes {

/// Exit statuses.
constexpr int Hecho = 0;
constexpr int Rechazado = 1;
constexpr int MalUsado = 2;

/// Where a command writes: its summary and data on stdout, refusals on stderr.
struct Consola {
    QTextStream &salida;
    QTextStream &errores;
};

/// A command used wrongly (an option's value that is not a date, two scopes at once…): its
/// usage follows the reason, and the status is 2.
struct UsoIncorrecto {
    QString motivo;
};

/// The session a command works in: the suite's database, opened as the program opens it
/// (TARIFAS_DB, else the default file), and what the engine needs of the shop and terminal.
class SesionOrden {
  public:
    SesionOrden();
    ~SesionOrden();
    const ContextoMotor &Contexto() const { return contexto; }
    ADODB::Connection &Conexion() { return *conexion; }
    /// The list LISTA names (its code, or its exact name); none, said on `consola`, when no
    /// list answers.
    std::optional<qint32> Lista(const QString &texto, Consola &consola);
    QString NombreTienda() const { return nombreTienda; }

  private:
    std::unique_ptr<ADODB::Connection> conexion;
    ContextoMotor contexto;
    QString nombreTienda;
};

/// One command: its name, what follows it in the usage, what it does, its options, and how
/// many arguments it takes.
struct DefinicionOrden {
    QString nombre;
    QString sinopsis;
    QString descripcion;
    QList<QCommandLineOption> opciones;
    QStringList argumentos;
    int (*ejecutar)(const QCommandLineParser &opciones, const QStringList &argumentos,
                    Consola &consola);
};

DefinicionOrden OrdenListas();
DefinicionOrden OrdenExportar();
DefinicionOrden OrdenImportar();
DefinicionOrden OrdenCopiar();
DefinicionOrden OrdenCambiar();
DefinicionOrden OrdenImprimir();
DefinicionOrden OrdenHistorial();
DefinicionOrden OrdenDeshacer();

/// A date as the command line takes it: yyyy-mm-dd, or the regional form. Raises
/// UsoIncorrecto naming `opcion` when it is neither.
QDate LeerFecha(const QString &texto, const QString &opcion);

/// A text on one line of tab-separated fields: a tab or a line break in it becomes a space.
QString EnUnCampo(QString texto);

} // namespace Ordenes
