#include "visorayuda.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace Pantalla {

VisorAyuda::VisorAyuda(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla) {
    auto *panel = new QFrame;
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setAutoFillBackground(true);

    pagina = new QTextBrowser(panel);
    pagina->setObjectName(QStringLiteral("pagina"));
    // Links are followed here, so that following one can be announced first.
    pagina->setOpenLinks(false);
    cerrar = new QPushButton(QStringLiteral("Cerrar"), panel);
    cerrar->setObjectName(QStringLiteral("cerrar"));

    auto *barra = new QHBoxLayout;
    barra->addStretch(1);
    barra->addWidget(cerrar);
    auto *capa = new QVBoxLayout(panel);
    capa->setContentsMargins(4, 4, 4, 4);
    capa->addLayout(barra);
    capa->addWidget(pagina, 1);

    connect(cerrar, &QPushButton::clicked, this, [this] {
        pedidoCierre = true;
        emit Aviso();
    });
    connect(pagina, &QTextBrowser::anchorClicked, this, [this](const QUrl &enlace) {
        pedidoCierre = false;
        const QUrl destino = pagina->source().resolved(enlace);
        if (destino.isLocalFile() || destino.isRelative() ||
            destino.scheme() == QLatin1String("qrc"))
            pagina->setSource(destino);
        else
            QDesktopServices::openUrl(destino);
        emit Aviso();
    });
    ponerWidget(panel);
}

QString VisorAyuda::Ubicar(const QString &ruta) {
    QString buscada = ruta;
    // Paths written for the old platform separate folders with backslashes.
    if (!QFileInfo(buscada).isFile() && buscada.contains(QLatin1Char('\\')))
        buscada.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (QFileInfo(buscada).isFile())
        return buscada;
    // Installed, the program lies in <prefix>/bin and its pages in <prefix>/share/tarifas:
    // a page asked for beside the program is looked for there too.
    const QString programa = QDir::cleanPath(QCoreApplication::applicationDirPath());
    const QString pedida = QDir::cleanPath(buscada);
    if (pedida.startsWith(programa + QLatin1Char('/'))) {
        const QString instalada = QDir::cleanPath(programa + QStringLiteral("/../share/tarifas/") +
                                                  pedida.mid(programa.size() + 1));
        if (QFileInfo(instalada).isFile())
            return instalada;
    }
    return buscada;
}

void VisorAyuda::MostrarPagina() {
    const QFileInfo fichero(Ubicar(RutaPagina));
    if (!fichero.isFile()) {
        pagina->setHtml(
            QStringLiteral("<p>No se encuentra la página de ayuda.</p><p><tt>%1</tt></p>")
                .arg(RutaPagina.toHtmlEscaped()));
        return;
    }
    const QUrl url = QUrl::fromLocalFile(fichero.absoluteFilePath());
    if (pagina->source() == url)
        pagina->reload(); // shown again: read afresh, the file may have changed
    else
        pagina->setSource(url);
}

} // namespace Pantalla
