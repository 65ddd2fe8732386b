#include "svctraduccion.h"

#include "platform/datos/recordset.h"
#include "platform/ui/form.h"
#include "suite/datos/svcregistros.h"

#include <QHash>

using namespace Pantalla;

namespace {

const QString idiomaDiseno = QStringLiteral("es");

QString IdiomaSuite(ADODB::Connection &conexion) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select idioma from opciones"), conexion);
    QString idioma;
    if (rs.RecordCount() > 0)
        idioma = rs.Fields(QStringLiteral("idioma")).Texto().trimmed();
    rs.Close();
    return idioma.isEmpty() ? idiomaDiseno : idioma;
}

/// The stored captions of one screen in one language, by control name.
QHash<QString, QString> Captions(ADODB::Connection &conexion, const QString &idioma,
                                 const QString &formulario) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral(
                "Select control, texto from traducciones where idioma = ? and formulario = ?"),
            {idioma, formulario}, conexion);
    QHash<QString, QString> captions;
    for (; !rs.Eof(); rs.MoveNext())
        captions.insert(rs.Fields(QStringLiteral("control")).Texto(),
                        rs.Fields(QStringLiteral("texto")).Texto());
    rs.Close();
    return captions;
}

} // namespace

void SvcTraduccion::TraducirFormulario(ADODB::Connection &conexion, Form &pantalla) {
    const QString idioma = IdiomaSuite(conexion);
    if (idioma == idiomaDiseno)
        return;
    const QHash<QString, QString> captions =
        Captions(conexion, idioma, QString::fromLatin1(pantalla.Diseno().nombre));
    if (auto t = captions.constFind(QString()); t != captions.cend())
        pantalla.setCaption(*t);
    for (Control *c : pantalla.Controls())
        if (c->TieneCaption())
            if (auto t = captions.constFind(c->Name()); t != captions.cend())
                c->setCaption(*t);
}

void SvcTraduccion::GenerarCaptions(ADODB::Connection &conexion, Form &pantalla) {
    const QString formulario = QString::fromLatin1(pantalla.Diseno().nombre);
    const QHash<QString, QString> guardadas = Captions(conexion, idiomaDiseno, formulario);
    SvcRegistros registros;
    auto guardar = [&](const QString &control, const QString &texto) {
        if (texto.isEmpty() || guardadas.contains(control) || texto.contains(QLatin1Char('|')))
            return;
        registros.InsertarRegistro(conexion, QStringLiteral("traducciones"),
                                   QStringLiteral("idioma=%1|formulario=%2|control=%3|texto=%4|")
                                       .arg(idiomaDiseno, formulario, control, texto),
                                   QString(), false, QString());
    };
    guardar(QString(), QString::fromUtf8(pantalla.Diseno().caption));
    for (const DisenoControl &d : pantalla.Diseno().controles)
        if (d.clase == ClaseControl::Label || d.clase == ClaseControl::CommandButton)
            guardar(QString::fromLatin1(d.nombre), QString::fromUtf8(d.texto));
}
