#include "basedatosprueba.h"

#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "suite/datos/esquema.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

using namespace ADODB;

namespace {

QSqlQuery Correr(const QSqlDatabase &base, const QString &sql, const QVariantList &valores) {
    QSqlQuery q(base);
    // PostgreSQL prepares no change of the schema: a statement without values runs as it is.
    const bool ok = valores.isEmpty() ? q.exec(sql) : q.prepare(sql) && [&] {
        for (const QVariant &v : valores)
            q.addBindValue(v);
        return q.exec();
    }();
    if (!ok)
        throw ErrorBD(q.lastError().text() + QStringLiteral(" in ") + sql);
    return q;
}

/// The server's maintenance connection, one for the test program: it creates and drops the
/// tests' databases, which can't be done from inside them. It is closed with the application,
/// while Qt's registry of connections still exists.
ADODB::Connection &Administracion() {
    static ADODB::Connection *conexion = [] {
        qAddPostRoutine([] { delete conexion; });
        return new ADODB::Connection;
    }();
    if (!conexion->Abierta()) {
        conexion->Open(BaseDatosPrueba::CadenaServidor());
        // "database does not exist, skipping" is no news here.
        QSqlQuery(conexion->Base()).exec(QStringLiteral("set client_min_messages to warning"));
    }
    return *conexion;
}

void Administrar(const QString &sentencia) {
    QSqlQuery q(Administracion().Base());
    if (!q.exec(sentencia))
        throw ErrorBD(q.lastError().text() + QStringLiteral(" in ") + sentencia);
}

/// The server's string with another database name.
QString CadenaDeBase(const QString &base) {
    const CadenaConexion c = CadenaConexion::Interpretar(BaseDatosPrueba::CadenaServidor());
    const auto cifrar = [](const QString &t) {
        return QString::fromLatin1(QUrl::toPercentEncoding(t));
    };
    return QStringLiteral("postgresql://%1:%2@%3:%4/%5")
        .arg(cifrar(c.usuario), cifrar(c.clave), c.servidor)
        .arg(c.puerto)
        .arg(base);
}

/// A database of the suite's empty tables, one per test program, from which each test's
/// database is copied: far quicker than creating the tables every time. Dropped with the
/// application.
QString Plantilla() {
    static const QString nombre = [] {
        const QString plantilla =
            QStringLiteral("prueba_%1_plantilla").arg(QCoreApplication::applicationPid());
        Administrar(QStringLiteral("drop database if exists %1").arg(plantilla));
        Administrar(QStringLiteral("create database %1").arg(plantilla));
        qAddPostRoutine([] {
            try {
                Administrar(QStringLiteral("drop database if exists %1 with (force)").arg(nombre));
            } catch (const ErrorBD &) {
            }
        });
        ADODB::Connection conexion; // a template is copied only with nobody on it
        conexion.Open(CadenaDeBase(plantilla));
        CrearTablasQueFaltan(conexion, TablasSuite());
        return plantilla;
    }();
    return nombre;
}

} // namespace

bool BaseDatosPrueba::EnPostgreSQL() {
    return !CadenaServidor().isEmpty();
}

QString BaseDatosPrueba::CadenaServidor() {
    return qEnvironmentVariable("TARIFAS_PRUEBAS_PG").trimmed();
}

BaseDatosPrueba::BaseDatosPrueba(bool conTablas) : conexion(std::make_unique<ADODB::Connection>()) {
    if (!dir.isValid())
        throw ErrorBD(QStringLiteral("No temporary directory: ") + dir.errorString());
    if (EnPostgreSQL()) {
        // Test programs run side by side on one server: the process id keeps names apart.
        static int contador = 0;
        nombreBase =
            QStringLiteral("prueba_%1_%2").arg(QCoreApplication::applicationPid()).arg(++contador);
        Administrar(QStringLiteral("drop database if exists %1").arg(nombreBase));
        Administrar(
            conTablas
                ? QStringLiteral("create database %1 template %2").arg(nombreBase, Plantilla())
                : QStringLiteral("create database %1").arg(nombreBase));
        cadena = CadenaDeBase(nombreBase);
    } else {
        cadena = QStringLiteral("sqlite:") + dir.filePath(QStringLiteral("suite.sqlite"));
    }
    conexion->Open(cadena);
    if (conTablas)
        CrearTablasQueFaltan(*conexion, TablasSuite());
}

BaseDatosPrueba::~BaseDatosPrueba() {
    conexion.reset();
    // Whatever connection a test left open on the database goes with it.
    if (nombreBase.isEmpty())
        return;
    try {
        Administrar(QStringLiteral("drop database if exists %1 with (force)").arg(nombreBase));
    } catch (const ErrorBD &e) {
        qWarning("The test database %s was not dropped: %s", qPrintable(nombreBase), e.what());
    }
}

QString BaseDatosPrueba::Ruta() const {
    return EnPostgreSQL() ? QString() : dir.filePath(QStringLiteral("suite.sqlite"));
}

void BaseDatosPrueba::Ejecutar(const QString &sql, const QVariantList &valores) {
    Correr(conexion->Base(), sql, valores);
}

QVariant BaseDatosPrueba::Valor(const QString &sql, const QVariantList &valores) {
    QSqlQuery q = Correr(conexion->Base(), sql, valores);
    return q.next() ? q.value(0) : QVariant();
}

void CrearTerminalSQLite(const QString &ruta, const QString &list1, const QString &list2) {
    QFile::remove(ruta);
    ADODB::Connection terminal;
    terminal.Open(QStringLiteral("sqlite:") + ruta);
    CrearTablasQueFaltan(terminal, TablasTerminal());
    Correr(terminal.Base(),
           QStringLiteral("insert into listadostemporal (list1, list2) values (?, ?)"),
           {list1, list2});
}
