#pragma once

// The main of every test program, and what every test file shares. Qt Test ends the whole
// program when an exception leaves a test function; here each test function runs on its own,
// so an unexpected ErrorBD fails that function, with the database's text, and the next one
// still runs. Each starts in the same world: Qt's test paths, so that no test touches the
// account's own files, and Spain's regional settings, the shop's. Qt Test brings the whole of
// Qt Core with it: a test file names only the headers of the other modules it uses.
#include "platform/datos/errorbd.h"

#if __has_include(<QApplication>)
#include <QApplication>
#endif
#include <QLocale>
#include <QMetaMethod>
#include <QStandardPaths>
#include <QtTest>
#include <cstdio>
#include <exception>
#include <tuple>

namespace Pruebas {

/// A data table whose rows are tuples of `Columnas`, kept in one column. `Tabla<QString, int>()`
/// declares it and gives the function that adds a row: `caso("nombre de la fila", "x", 3)`.
/// The test function reads the current row as `const auto [texto, n] = Fila<QString, int>();`,
/// which names the columns where they are used. A row of other types fails the test.
template <typename... Columnas> auto Tabla() {
    QTest::addColumn<std::tuple<Columnas...>>("fila");
    return [](const char *nombre, Columnas... valores) {
        QTest::newRow(nombre) << std::tuple<Columnas...>(std::move(valores)...);
    };
}

/// The current row of a Tabla.
template <typename... Columnas> std::tuple<Columnas...> Fila() {
    using T = std::tuple<Columnas...>;
    return *static_cast<const T *>(QTest::qData("fila", qMetaTypeId<T>()));
}

/// The test functions of `prueba`, in declaration order, as Qt Test runs them.
inline QStringList Funciones(const QObject &prueba) {
    static const QStringList especiales{"initTestCase", "cleanupTestCase", "init", "cleanup"};
    QStringList nombres;
    const QMetaObject *meta = prueba.metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod m = meta->method(i);
        const QString nombre = QString::fromLatin1(m.name());
        if (m.methodType() == QMetaMethod::Slot && m.access() == QMetaMethod::Private &&
            m.parameterCount() == 0 && !especiales.contains(nombre) &&
            !nombre.endsWith(QLatin1String("_data")))
            nombres << nombre;
    }
    return nombres;
}

/// Runs qExec with `argumentos`; an exception that escapes is a failure, said on stderr.
inline int Ejecutar(QObject &prueba, const QStringList &argumentos, const QString &donde) {
    const auto fallo = [&](const QString &texto) {
        std::fprintf(stderr, "FAIL!  : %s::%s excepción inesperada: %s\n",
                     prueba.metaObject()->className(), qPrintable(donde), qPrintable(texto));
        return 1;
    };
    QStandardPaths::setTestModeEnabled(true);
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    try {
        return QTest::qExec(&prueba, argumentos);
    } catch (const ADODB::ErrorBD &e) {
        return fallo(QStringLiteral("ErrorBD: ") + e.Texto());
    } catch (const std::exception &e) {
        return fallo(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return fallo(QStringLiteral("de un tipo desconocido"));
    }
}

/// With no function named on the command line, one qExec per test function; otherwise the
/// command line as given, in one qExec.
inline int EjecutarTodas(QObject &prueba, int argc, char **argv) {
    QStringList argumentos;
    for (int i = 0; i < argc; ++i)
        argumentos << QString::fromLocal8Bit(argv[i]);
    const bool nombradas = std::any_of(argumentos.begin() + 1, argumentos.end(),
                                       [](const QString &a) { return !a.startsWith('-'); });
    if (nombradas || argumentos.contains(QLatin1String("-functions")))
        return Ejecutar(prueba, argumentos, argumentos.mid(1).join(' '));
    int resultado = 0;
    for (const QString &funcion : Funciones(prueba))
        resultado |= Ejecutar(prueba, argumentos + QStringList{funcion}, funcion) != 0;
    return resultado;
}

} // namespace Pruebas

/// main for a test that shows widgets.
#define TARIFAS_PRUEBAS(Clase)                                                                     \
    int main(int argc, char **argv) {                                                              \
        QApplication app(argc, argv);                                                              \
        app.setAttribute(Qt::AA_Use96Dpi, true);                                                   \
        Clase prueba;                                                                              \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return Pruebas::EjecutarTodas(prueba, argc, argv);                                         \
    }

/// main for a test without widgets.
#define TARIFAS_PRUEBAS_SIN_VENTANAS(Clase)                                                        \
    int main(int argc, char **argv) {                                                              \
        QCoreApplication app(argc, argv);                                                          \
        Clase prueba;                                                                              \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return Pruebas::EjecutarTodas(prueba, argc, argv);                                         \
    }
