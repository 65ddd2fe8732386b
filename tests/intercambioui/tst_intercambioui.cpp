// Prices in and out of a list as the operator reaches them: "Exportar…", "Importar…" and
// "Imprimir…" of the register's and the editor's context menus, the file dialogs answered in
// the operator's place; the files written, the import's dry run before any write, and the
// progress of a long printing.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "dialogos/menus.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPrintPreviewDialog>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolBar>
#include <numeric>

using namespace Pantalla;

namespace {

const QString Exportar = QStringLiteral("Exportar…");
const QString Importar = QStringLiteral("Importar…");
const QString Imprimir = QStringLiteral("Imprimir…");

/// "Moda Prueba" keeps list 1 "General" with the prices of a shirt and trousers.
void Tienda(TiendaPrueba &t) {
    t.Ejecutar("update opciones set nombretienda = 'Moda Prueba'");
    t.Lista(1, QStringLiteral("General"));
    t.Producto(1, "C1", "Camisa", "25");
    t.Producto(2, "P2", "Pantalón", "40");
    t.Precio(1, 1, "20");
    t.Precio(1, 2, "30.5");
}

/// The context menu on list 1, from the register's grid or from the editor's.
QMenu *MenuDeLista(TiendaPrueba &t, bool editor) {
    if (!editor) {
        Grid &grid = *t.Registro().grid_precios;
        return ClicDerecho(grid, FilaRegistro(1));
    }
    FrmTarifas &e = t.Abierto(1);
    e.Label5->setCaption(QStringLiteral("General"));
    return ClicDerecho(*e.grid_Pseleccionados, 1);
}

/// List 1's prices as "product=price", by product, with the shop's two decimals.
QStringList Precios(TiendaPrueba &t) {
    QStringList filas;
    QSqlQuery q(t.db().Conexion().Base());
    if (!q.exec("select producto, precio from detalle_precio where identificador = 1 order by "
                "producto"))
        qWarning("Could not read the prices");
    while (q.next())
        filas << q.value(0).toString() + '=' + QString::number(q.value(1).toDouble(), 'f', 2);
    return filas;
}

/// What `programa` prints for `argumentos`.
QString Imprime(const QString &programa, const QStringList &argumentos) {
    QProcess p;
    p.start(programa, argumentos);
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        qWarning("%s failed", qPrintable(programa));
    return QString::fromUtf8(p.readAllStandardOutput());
}

const QByteArray CabeceraCsv = "\xEF\xBB\xBF"
                               "codigo;variante;nombre;talla;color;precio_venta;precio\r\n";

} // namespace

class TstIntercambioUi : public QObject {
    Q_OBJECT
  private slots:
    void exportar_data() {
        // from the editor, the file the operator names (empty: cancelled), what is in it
        const auto caso = Pruebas::Tabla<bool, QString, QByteArray>();
        const QByteArray csv = CabeceraCsv + "C1;;Camisa;;;25,00;20,00\r\n"
                                             "P2;;Pantalón;;;40,00;30,50\r\n";
        caso("register, CSV", false, "General.csv", csv);
        caso("editor, CSV", true, "lista.CSV", csv);
        caso("a name typed without its extension", true, "lista", csv);
        caso("register, XLSX", false, "General.xlsx", "PK");
        caso("editor, XLSX", true, "General.xlsx", "PK");
        caso("cancelled", false, "", "");
    }
    void exportar() {
        const auto [editor, nombre, contenido] = Pruebas::Fila<bool, QString, QByteArray>();
        TiendaPrueba t;
        Tienda(t);
        const QTemporaryDir carpeta;
        const QString ruta = nombre.isEmpty() ? QString() : carpeta.filePath(nombre);
        RespuestasMensajes respuestas;
        respuestas.ResponderFichero(ruta);
        QVERIFY(Elegir(MenuDeLista(t, editor), Exportar));
        // The dialog proposes the list's name.
        QCOMPARE(respuestas.Ficheros(),
                 QStringList{"Exportar la tarifa: " + QDir::home().filePath("General.csv")});
        const QString escrito =
            ruta.isEmpty() || QFileInfo(ruta).suffix().isEmpty() ? ruta + ".csv" : ruta;
        QCOMPARE(QDir(carpeta.path()).entryList(QDir::Files),
                 ruta.isEmpty() ? QStringList() : QStringList{QFileInfo(escrito).fileName()});
        if (ruta.isEmpty()) {
            QCOMPARE(respuestas.Mostrados(), QStringList());
            return;
        }
        QCOMPARE(respuestas.Mostrados(), QStringList{"2 precios exportados a " + escrito + "."});
        QFile f(escrito);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray datos = f.readAll();
        if (!contenido.startsWith("PK")) {
            QCOMPARE(datos, contenido);
            return;
        }
        // A workbook: its sheet holds the names as text and the prices as numbers.
        QVERIFY(datos.startsWith(contenido));
        const QString hoja = Imprime("unzip", {"-p", escrito, "xl/worksheets/sheet1.xml"});
        for (const char *parte : {"precio_venta", "Pantalón", "<v>20</v>", "<v>30.5</v>"})
            QVERIFY2(hoja.contains(QString::fromUtf8(parte)), parte);
    }

    void importar_data() {
        // from the editor, the file, the mode (1: sustituir), the button pressed, the dry run's
        // summary (or why the file is refused), the refused lines it shows, the prices after,
        // the editor's grid after (prices as the grid shows them)
        const auto caso = Pruebas::Tabla<bool, QByteArray, int, QString, QString, QString,
                                         QStringList, QStringList>();
        caso("editor, a price changed", true, "codigo;precio\nC1;21,5\n", 0, "btnImportar",
             "Se importarían: 0 añadidos, 1 cambiados, 0 quitados, 0 iguales.", "",
             {"1=21.50", "2=30.50"}, {"Camisa=21,5", "Pantalón=30,5"});
        caso("register, sustituir", false, "codigo;precio\nC1;20\n", 1, "btnImportar",
             "Se importarían: 0 añadidos, 0 cambiados, 1 quitados, 1 iguales.", "", {"1=20.00"},
             {});
        caso("a refused line, the valid ones imported", true, "codigo;precio\nC1;22\nXX;5\n", 0,
             "btnImportar", "Se importarían: 0 añadidos, 1 cambiados, 0 quitados, 0 iguales.",
             "Línea 3: ", {"1=22.00", "2=30.50"}, {"Camisa=22", "Pantalón=30,5"});
        caso("a refused line, nothing imported", false, "codigo;precio\nC1;22\nXX;5\n", 0,
             "btnCancelar", "Se importarían: 0 añadidos, 1 cambiados, 0 quitados, 0 iguales.",
             "Línea 3: ", {"1=20.00", "2=30.50"}, {});
        caso("not a price list", true, QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11), 0, "btnCancelar",
             "El fichero no es de texto", "", {"1=20.00", "2=30.50"},
             {"Camisa=20", "Pantalón=30,5"});
    }
    void importar() {
        const auto [editor, fichero, modo, boton, resumen, rechazo, despues, enGrid] =
            Pruebas::Fila<bool, QByteArray, int, QString, QString, QString, QStringList,
                          QStringList>();
        TiendaPrueba t;
        Tienda(t);
        const QTemporaryDir carpeta;
        const QString ruta = carpeta.filePath("precios.csv");
        QFile f(ruta);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(fichero) == fichero.size());
        f.close();
        QMenu *menu = MenuDeLista(t, editor);
        const QStringList antes = t.Volcado();
        RespuestasMensajes respuestas;
        respuestas.ResponderFichero(ruta);
        bool importable = false;
        QVERIFY(ConDialogo<QDialog>(
            [&] { QVERIFY(Elegir(menu, Importar)); },
            [&](QDialog &d) {
                // The dry run shows before anything is written.
                QCOMPARE(t.Volcado(), antes);
                if (modo == 1)
                    Hijo<QComboBox>(d, "cboModo")->setCurrentIndex(1);
                const QString texto = Hijo<QLabel>(d, "lblResumen")->text();
                QVERIFY2(texto.startsWith(resumen), qPrintable(texto));
                QVERIFY(Hijo<QPlainTextEdit>(d, "txtRechazos")->toPlainText().startsWith(rechazo));
                importable = Hijo<QPushButton>(d, "btnImportar")->isEnabled();
                // Enter imports only a file without refused lines.
                QCOMPARE(Hijo<QPushButton>(d, "btnImportar")->isDefault(),
                         importable && rechazo.isEmpty());
                Pulsar(d, qPrintable(boton));
            }));
        // A file that is not a price list can't be imported at all.
        QCOMPARE(importable, resumen.startsWith("Se importarían"));
        QCOMPARE(Precios(t), despues);
        if (despues == QStringList{"1=20.00", "2=30.50"})
            QCOMPARE(t.Volcado(), antes);
        // Told once, after the import's unit (nothing is said when nothing was imported).
        QCOMPARE(respuestas.DentroDeUnidad(), 0);
        QCOMPARE(respuestas.Mostrados().size(), boton == "btnImportar" ? 1 : 0);
        if (editor) {
            QStringList filas;
            const Grid &g = *frmTarifas().grid_Pseleccionados;
            for (int r = 1; r < g.Rows(); ++r)
                filas << g.TextMatrix(r, ColLlano::Nombre) + '=' +
                             g.TextMatrix(r, ColLlano::Precio);
            QCOMPARE(filas, enGrid);
        }
    }

    void imprimir_data() {
        const auto caso = Pruebas::Tabla<bool>();
        caso("register", false);
        caso("editor", true);
    }
    void imprimir() {
        // The print preview's "Guardar como PDF": one page with the shop, the list and its
        // prices.
        const auto [editor] = Pruebas::Fila<bool>();
        TiendaPrueba t;
        Tienda(t);
        const QTemporaryDir carpeta;
        const QString ruta = carpeta.filePath("General");
        QMenu *menu = MenuDeLista(t, editor);
        RespuestasMensajes respuestas;
        respuestas.ResponderFichero(ruta);
        QVERIFY(ConDialogo<QPrintPreviewDialog>(
            [&] { QVERIFY(Elegir(menu, Imprimir)); },
            [&](QPrintPreviewDialog &d) {
                QAction *pdf = d.findChild<QToolBar *>()->actions().constLast();
                QCOMPARE(pdf->text(), "Guardar como PDF");
                pdf->trigger();
            }));
        QCOMPARE(respuestas.Ficheros(),
                 QStringList{"Guardar como PDF: " + QDir::home().filePath("General.pdf")});
        // A name typed without its extension gets it.
        QCOMPARE(respuestas.Mostrados(),
                 QStringList{"La tarifa se ha guardado en " + ruta + ".pdf."});
        QVERIFY(Imprime("pdfinfo", {ruta + ".pdf"}).contains(QRegularExpression("Pages: +1\n")));
        const QString texto = Imprime("pdftotext", {"-layout", ruta + ".pdf", "-"});
        for (const char *parte : {"Moda Prueba", "General", "Página 1 de 1", "C1", "Camisa",
                                  "25,00", "20,00", "Pantalón", "30,50"})
            QVERIFY2(texto.contains(QString::fromUtf8(parte)), parte);
    }

    void imprimirLargo() {
        // 10,000 prices take hundreds of pages: while they are drawn, the screen's events are
        // served and the progress goes up, page by page, to the last.
        TiendaPrueba t;
        Tienda(t);
        t.Ejecutar("with recursive n(i) as (select 3 union all select i + 1 from n where i < "
                   "10000) insert into productos select i, 'X' || i, 'Producto ' || i, 10, 'S', 0 "
                   "from n");
        t.Ejecutar("insert into detalle_precio select 1, codigo, 9.5, null from productos where "
                   "codigo > 2");
        QMenu *menu = MenuDeLista(t, false);
        QList<int> vistos; // each page the progress showed, of `paginas`
        int paginas = 0;
        QTimer vigia;
        vigia.setInterval(0);
        connect(&vigia, &QTimer::timeout, [&] {
            for (QWidget *w : QApplication::topLevelWidgets())
                if (auto *p = qobject_cast<QProgressDialog *>(w);
                    p && p->value() > 0 && (vistos.isEmpty() || vistos.last() != p->value())) {
                    vistos << p->value();
                    paginas = p->maximum();
                }
        });
        vigia.start();
        RespuestasMensajes respuestas;
        QVERIFY(ConDialogo<QPrintPreviewDialog>([&] { QVERIFY(Elegir(menu, Imprimir)); },
                                                [&](QPrintPreviewDialog &) { vigia.stop(); }));
        QVERIFY2(paginas > 100, qPrintable(QString::number(paginas)));
        // Every page in order, but the first and the last, which open and close the progress.
        QList<int> cadaPagina(vistos.size());
        std::iota(cadaPagina.begin(), cadaPagina.end(), vistos.value(0));
        QCOMPARE(vistos, cadaPagina);
        QVERIFY(vistos.first() <= 2 && vistos.last() >= paginas - 1);
    }
};

TARIFAS_PRUEBAS(TstIntercambioUi)
#include "tst_intercambioui.moc"
