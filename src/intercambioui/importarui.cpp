// "Importar…": the file, its dry run in a dialog of its own, then the import.
#include "intercambioui.h"

#include "intercambio/importacion.h"
#include "platform/ui/mensajes.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Pantalla;

namespace {

/// Larger than any list a shop keeps: a file above it is not a price list.
constexpr qint64 tamanoMaximo = qint64(256) * 1024 * 1024;

/// The dry run shown: the mode to choose, the counts and every refused line. Reads only; the
/// import itself starts after the dialog is gone.
class DlgImportar : public QDialog {
  public:
    DlgImportar(const ContextoMotor &ctx, qint32 codigoLista, const QString &nombre,
                const QString &ruta, QByteArray bytes, QWidget *padre)
        : QDialog(padre), contexto(ctx), lista(codigoLista), datos(std::move(bytes)) {
        setWindowTitle(QStringLiteral("Importar precios en %1").arg(nombre));
        resize(640, 420);
        auto *capas = new QVBoxLayout(this);
        capas->addWidget(new QLabel(QStringLiteral("Fichero: %1").arg(ruta)));
        modo = new QComboBox;
        modo->setObjectName(QStringLiteral("cboModo"));
        modo->addItems({QStringLiteral("Añadir y actualizar"),
                        QStringLiteral("Sustituir (quita los precios que el fichero no nombra)")});
        capas->addWidget(modo);
        resumen = new QLabel;
        resumen->setObjectName(QStringLiteral("lblResumen"));
        resumen->setWordWrap(true);
        capas->addWidget(resumen);
        rechazos = new QPlainTextEdit;
        rechazos->setObjectName(QStringLiteral("txtRechazos"));
        rechazos->setReadOnly(true);
        // The refused lines take the room when there are any; without them the texts stay
        // together at the top rather than spread over the dialog.
        capas->addWidget(rechazos, 1);
        capas->addStretch();
        botones = new QDialogButtonBox;
        importar = botones->addButton(QStringLiteral("Importar"), QDialogButtonBox::AcceptRole);
        cancelar = botones->addButton(QStringLiteral("Cancelar"), QDialogButtonBox::RejectRole);
        importar->setObjectName(QStringLiteral("btnImportar"));
        cancelar->setObjectName(QStringLiteral("btnCancelar"));
        capas->addWidget(botones);
        connect(botones, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(modo, &QComboBox::currentIndexChanged, this, [this] { Prueba(); });
        Prueba();
    }

    ModoImportacion Modo() const {
        return modo->currentIndex() == 1 ? ModoImportacion::Sustituir
                                         : ModoImportacion::AnadirYActualizar;
    }
    bool ConRechazos() const { return !plan.rechazadas.isEmpty(); }
    const QByteArray &Datos() const { return datos; }
    const PlanImportacion &Plan() const { return plan; }

  private:
    void Prueba() {
        plan = PlanearImportacion(contexto, lista, datos, Modo());
        rechazos->clear();
        if (!plan.error.isEmpty()) {
            resumen->setText(plan.error);
            importar->setEnabled(false);
            cancelar->setText(QStringLiteral("Cerrar"));
            cancelar->setDefault(true);
            return;
        }
        QStringList lineas;
        for (const LineaRechazada &r : plan.rechazadas)
            lineas << QStringLiteral("Línea %1: %2").arg(r.linea).arg(r.motivo);
        rechazos->setPlainText(lineas.join(QLatin1Char('\n')));
        resumen->setText(
            QStringLiteral("Se importarían: %1.").arg(ResumenImportacion(plan)) +
            (ConRechazos()
                 ? QStringLiteral("\n%1 líneas rechazadas (abajo, con su motivo): puede importar "
                                  "las válidas o no importar nada.")
                       .arg(plan.rechazadas.size())
                 : QString()));
        importar->setText(ConRechazos() ? QStringLiteral("Importar las válidas")
                                        : QStringLiteral("Importar"));
        cancelar->setText(ConRechazos() ? QStringLiteral("No importar nada")
                                        : QStringLiteral("Cancelar"));
        rechazos->setVisible(ConRechazos());
        // Enter imports a clean file; with refused lines it takes the safe way, nothing.
        importar->setEnabled(true);
        (ConRechazos() ? cancelar : importar)->setDefault(true);
    }

    const ContextoMotor &contexto;
    qint32 lista;
    QByteArray datos;
    PlanImportacion plan;
    QComboBox *modo;
    QLabel *resumen;
    QPlainTextEdit *rechazos;
    QDialogButtonBox *botones;
    QPushButton *importar;
    QPushButton *cancelar;
};

} // namespace

bool DialogoImportar(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                     QWidget *padre) {
    const QString ruta =
        PedirFicheroAbrir(padre, QStringLiteral("Importar precios"), QDir::homePath(),
                          QStringLiteral("Hoja CSV (*.csv *.txt);;Todos los ficheros (*)"));
    if (ruta.isEmpty())
        return false;
    QFile fichero(ruta);
    if (!fichero.open(QIODevice::ReadOnly) || fichero.size() > tamanoMaximo) {
        MsgBoxInformacion(QStringLiteral("No se puede leer %1 como una tarifa: %2")
                              .arg(ruta, fichero.size() > tamanoMaximo
                                             ? QStringLiteral("es demasiado grande.")
                                             : fichero.errorString()));
        return false;
    }
    DlgImportar dialogo(contexto, lista, nombre, ruta, fichero.readAll(), padre);
    if (dialogo.exec() != QDialog::Accepted)
        return false;
    // The unit of work starts now that no dialog waits; inside, it takes the dry run the
    // operator saw when the database is still as that read it, or makes it again.
    const ResultadoImportacion r = Importar(
        contexto, lista, dialogo.Datos(), dialogo.Modo(), dialogo.ConRechazos(),
        QStringLiteral("Importación de %1").arg(QFileInfo(ruta).fileName()), &dialogo.Plan());
    MsgBoxInformacion(r.estado == ResultadoImportacion::Importada
                          ? QStringLiteral("Importado: %1.").arg(r.mensaje)
                          : r.mensaje);
    return r.estado == ResultadoImportacion::Importada && !r.plan.cambios.empty();
}
