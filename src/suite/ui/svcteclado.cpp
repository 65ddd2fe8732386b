#include "svcteclado.h"

#include "platform/ui/controles.h"

#include <QGuiApplication>
#include <QInputMethod>

using namespace Pantalla;

QString SvcTeclado::LeerAjusteTeclado() {
    // Only a program with a display has an input method to ask.
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return QGuiApplication::inputMethod()->locale().name();
    return QLocale().name();
}

qint16 SvcTeclado::FiltrarTeclaPrecio(qint16 tecla, TextBox &caja, qint16 numDecimales) {
    if (tecla == 8)
        return tecla;
    // The text as it will be once the key replaces the selection.
    const QString texto = caja.Text();
    const int inicio = caja.SelStart();
    const QString antes = texto.left(inicio);
    const QString despues = texto.mid(inicio + caja.SelLength());
    const QString resto = antes + despues;
    const int separador = [&] {
        const int coma = resto.indexOf(QLatin1Char(','));
        return coma >= 0 ? coma : int(resto.indexOf(QLatin1Char('.')));
    }();

    if (tecla == '-')
        return inicio == 0 && !despues.startsWith(QLatin1Char('-')) ? tecla : 0;
    if (tecla == ',' || tecla == '.') {
        if (numDecimales <= 0 || separador >= 0)
            return 0;
        // The digits after the caret become decimals: refuse if they are too many.
        return despues.size() <= numDecimales ? tecla : 0;
    }
    if (tecla >= '0' && tecla <= '9') {
        if (separador >= 0 && separador < antes.size()) {
            const qsizetype decimales = resto.size() - separador - 1;
            if (decimales + 1 > numDecimales)
                return 0;
        }
        return tecla;
    }
    return 0;
}
