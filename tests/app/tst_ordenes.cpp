// The command line through the real executable, with no display: each command's summary on
// stdout, refused lines on stderr, the exit statuses, and what is left in the database.
#include "apoyo/ejecucion.h"
#include "intercambio/tiendaintercambio.h"

#include <QProcess>
#include <QRegularExpression>

namespace {

struct Salida {
    int estado = -1;
    QString salida;
    QString errores;
};

/// Runs tarifas with `argumentos` ("{dir}" stands for the test's folder) on the shop's database,
/// with no display of any kind.
Salida Tarifas(TiendaIntercambio &t, QStringList argumentos) {
    for (QString &a : argumentos)
        a.replace(QStringLiteral("{dir}"), t.db.Directorio());
    QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
    for (const char *v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        e.remove(QLatin1String(v));
    e.insert(QStringLiteral("TARIFAS_DB"), t.db.Cadena());
    e.insert(QStringLiteral("XDG_DATA_HOME"), t.db.Directorio() + QStringLiteral("/datos"));
    e.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    QProcess p;
    p.setProcessEnvironment(e);
    p.start(QStringLiteral(TARIFAS_EXE), argumentos);
    Salida s;
    if (!p.waitForFinished(60000)) {
        p.kill();
        p.waitForFinished();
        return s;
    }
    s.estado = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
    s.salida = QString::fromUtf8(p.readAllStandardOutput());
    s.errores = QString::fromUtf8(p.readAllStandardError());
    return s;
}

void Escribir(const QString &ruta, const QByteArray &datos) {
    QFile f(ruta);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(datos);
}

} // namespace

class TstOrdenes : public QObject {
    Q_OBJECT

  private slots:
    void ordenes_data() {
        // arguments, status, stdout (a pattern), stderr (a part), the list afterwards ({} as
        // it was)
        const auto caso = Pruebas::Tabla<QStringList, int, QString, QString, QStringList>();
        caso("versión", {"--version"}, 0, "^tarifas \\d+\\.\\d+\\n$", "", {});
        caso("ayuda", {"--help"}, 0, "Comandos:(.|\\n)*importar LISTA FICHERO", "", {});
        caso("ayuda de un comando", {"importar", "--help"}, 0,
             "^Uso: tarifas importar LISTA FICHERO(.|\\n)*--solo-validas", "", {});
        caso("comando que no hay", {"borrar"}, 2, "^$", "no hay ningún comando \"borrar\"", {});
        caso("faltan argumentos", {"importar", "1"}, 2, "^$", "faltan argumentos", {});
        caso("sobran argumentos", {"listas", "1"}, 2, "^$", "sobran argumentos", {});
        caso("opción que no hay", {"cambiar", "1", "--rebaja", "5"}, 2, "^$", "rebaja", {});
        caso("listas", {"listas"}, 0, "^1\\tGeneral\\t2026-01-01\\t2026-12-31\\n$", "", {});
        caso("exportar por el nombre", {"exportar", "General", "{dir}/g.csv"}, 0,
             "^exportar: 2 precios en .*g\\.csv\\n$", "", {});
        caso("tarifa que no hay", {"exportar", "9", "{dir}/g.csv"}, 1, "^$",
             "no hay ninguna tarifa de código o nombre \"9\"", {});
        caso("importar", {"importar", "1", "{dir}/bueno.csv"}, 0,
             "^importar: 1 añadidos, 1 cambiados, 0 quitados, 0 iguales\\n$", "",
             {"1/=91,50", "2/=45,00", "3/=12,50", "4/=9,00"});
        caso("importar sustituyendo", {"importar", "1", "{dir}/bueno.csv", "--sustituir"}, 0,
             "^importar: 1 añadidos, 1 cambiados, 1 quitados, 0 iguales\\n$", "",
             {"1/=91,50", "3/=12,50", "4/=9,00"});
        caso("importar con rechazos", {"importar", "1", "{dir}/malo.csv"}, 1, "^$",
             "malo.csv:3: código «ZZ» desconocido\n", {});
        caso("solo las válidas", {"importar", "1", "{dir}/malo.csv", "--solo-validas"}, 0,
             "^importar: 0 añadidos, 1 cambiados, 0 quitados, 0 iguales, 1 líneas rechazadas\\n$",
             "malo.csv:3: código «ZZ» desconocido\n", {"1/=91,50", "2/=45,00", "4/=9,00"});
        caso("prueba", {"importar", "1", "{dir}/bueno.csv", "--prueba"}, 0,
             "^importar \\(prueba, nada escrito\\): 1 añadidos, 1 cambiados", "", {});
        caso("fichero que no hay", {"importar", "1", "{dir}/no.csv"}, 1, "^$", "no se puede leer",
             {});
        caso("fichero que no es texto", {"importar", "1", "{dir}/foto.png"}, 1, "^$",
             "no es de texto", {});
        caso("copiar", {"copiar", "1", "Copia", "--desde", "2027-01-01", "--hasta", "31/12/2027"},
             0, "^2\\n$", "", {});
        caso("copiar con un nombre que no vale", {"copiar", "1", "a|b"}, 1, "^$", "|", {});
        caso("copiar con una fecha que no lo es", {"copiar", "1", "X", "--desde", "mañana"}, 2,
             "^$", "no es una fecha", {});
        caso("cambiar", {"cambiar", "1", "--porcentaje", "10", "--terminacion", "0,95"}, 0,
             "^cambiar: 3 cambiados, 0 rechazados\\n$", "", {"1/=99,95", "2/=49,95", "4/=9,95"});
        caso("cambiar en prueba", {"cambiar", "1", "--porcentaje", "10", "--prueba"}, 0,
             "Abrigo\\t90,00 -> 99,00\\n(.|\\n)*cambiar \\(prueba, nada escrito\\): 3 cambian", "",
             {});
        caso("cambiar con un número que no lo es", {"cambiar", "1", "--porcentaje", "diez"}, 1,
             "^$", "\"diez\" no es un número", {});
        caso("dos alcances", {"cambiar", "1", "--seccion", "S", "--nombre", "A"}, 2, "^$",
             "no van juntas", {});
        caso("imprimir sin .pdf", {"imprimir", "1", "{dir}/l.txt"}, 2, "^$", ".pdf", {});
        caso("deshacer algo que no es un número", {"deshacer", "x"}, 2, "^$", "OPERACION", {});
    }
    void ordenes() {
        const auto [argumentos, estado, salida, errores, despues] =
            Pruebas::Fila<QStringList, int, QString, QString, QStringList>();
        TiendaIntercambio t(false);
        Escribir(t.db.Directorio() + "/bueno.csv", "codigo;precio\nA1;91,5\nC3;12.5\n");
        Escribir(t.db.Directorio() + "/malo.csv", "codigo;precio\nA1;91,5\nZZ;1\n");
        Escribir(t.db.Directorio() + "/foto.png", QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
        const QStringList antes = t.Precios();
        const Salida s = Tarifas(t, argumentos);
        QVERIFY2(s.estado == estado, qPrintable(s.errores));
        QVERIFY2(QRegularExpression(salida).match(s.salida).hasMatch(), qPrintable(s.salida));
        QVERIFY2(s.errores.contains(errores), qPrintable(s.errores));
        QCOMPARE(t.Precios(), despues.isEmpty() ? antes : despues);
    }

    void historial_y_deshacer() {
        TiendaIntercambio t(false);
        Escribir(t.db.Directorio() + "/bueno.csv", "codigo;precio\nA1;91,5\nC3;12.5\n");
        const QStringList antes = t.Precios();
        QCOMPARE(Tarifas(t, {"importar", "1", "{dir}/bueno.csv"}).estado, 0);
        const Salida h = Tarifas(t, {"historial", "General"});
        QCOMPARE(h.estado, 0);
        const QStringList campos = h.salida.trimmed().split(QLatin1Char('\t'));
        QCOMPARE(campos.size(), 6);
        QVERIFY2(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$")
                     .match(campos[1])
                     .hasMatch(),
                 qPrintable(campos[1]));
        QCOMPARE(campos[2], QStringLiteral("CAJA1"));
        QCOMPARE(campos[4], QStringLiteral("2"));
        QCOMPARE(campos[5], QStringLiteral("Importación de bueno.csv"));
        const Salida d = Tarifas(t, {"deshacer", campos[0]});
        QVERIFY2(d.estado == 0, qPrintable(d.errores));
        QVERIFY(d.salida.startsWith(QStringLiteral("deshacer: ")));
        QCOMPARE(t.Precios(), antes);
        // Newest first: the undo above the import.
        const QStringList lineas = Tarifas(t, {"historial", "1"}).salida.trimmed().split('\n');
        QCOMPARE(lineas.size(), 2);
        QVERIFY(lineas[1].startsWith(campos[0] + QLatin1Char('\t')));
        QCOMPARE(Tarifas(t, {"deshacer", "999"}).estado, 1);
    }

    void pdf_data() {
        // further products priced, pages
        const auto caso = Pruebas::Tabla<int, int>();
        caso("una página", 0, 1);
        caso("varias páginas", 130, 3);
    }
    void pdf() {
        const auto [mas, paginas] = Pruebas::Fila<int, int>();
        TiendaIntercambio t(false);
        for (int i = 0; i < mas; ++i) {
            t.db.Ejecutar("insert into productos values (?, ?, ?, 1, 'S', 0)",
                          {100 + i, QStringLiteral("Z%1").arg(i),
                           QStringLiteral("Zapato %1").arg(i, 3, 10, QLatin1Char('0'))});
            t.db.Ejecutar("insert into detalle_precio values (1, ?, 2, null)", {100 + i});
        }
        const QString pdf = t.db.Directorio() + "/General.pdf";
        const Salida s = Tarifas(t, {"imprimir", "1", pdf});
        QVERIFY2(s.estado == 0, qPrintable(s.errores));
        QCOMPARE(s.errores, QString());
        QVERIFY2(
            s.salida.contains(QStringLiteral("%1 precios en %2 página").arg(mas + 2).arg(paginas)),
            qPrintable(s.salida));
        QProcess info;
        info.start(QStringLiteral("pdfinfo"), {pdf});
        QVERIFY(info.waitForFinished());
        QVERIFY(QString::fromUtf8(info.readAllStandardOutput())
                    .contains(QRegularExpression(QStringLiteral("Pages:\\s+%1\\n").arg(paginas))));
        QProcess texto;
        texto.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, "-"});
        QVERIFY(texto.waitForFinished());
        const QStringList hojas = QString::fromUtf8(texto.readAllStandardOutput()).split('\f');
        for (int p = 1; p <= paginas; ++p) {
            const QString &hoja = hojas[p - 1];
            QVERIFY2(hoja.contains(QStringLiteral("Página %1 de %2").arg(p).arg(paginas)),
                     qPrintable(hoja));
            QVERIFY(hoja.contains("Moda Prueba") &&
                    hoja.contains("General (del 1/1/2026 al 31/12/2026)"));
            QVERIFY(hoja.contains("Código") && hoja.contains("Precio tarifa"));
        }
        // The editor's order, by name: Abrigo first, the last Zapato at the end.
        QVERIFY(hojas[0].contains(QRegularExpression("A1\\s+Abrigo\\s+100,00\\s+90,00")));
        if (mas > 0)
            QVERIFY(hojas[paginas - 1].contains(
                QStringLiteral("Zapato %1").arg(mas - 1, 3, 10, QLatin1Char('0'))));
    }
};

TARIFAS_PRUEBAS(TstOrdenes)
#include "tst_ordenes.moc"
