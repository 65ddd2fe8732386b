#include "dtpicker.h"

#include "platform/datos/regional.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QTextCharFormat>

#include <algorithm>
#include <stdexcept>

using namespace Sistema;

namespace Pantalla {

DTPicker::DTPicker(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla), editor(new QDateEdit) {
    editor->setCalendarPopup(true);
    editor->setDateRange(MinDate(), MaxDate());
    editor->setDisplayFormat(FormatoFechaRegional());
    editor->setDate(QDate::currentDate());
    connect(editor, &QDateEdit::dateChanged, this, &DTPicker::Change);
    ponerWidget(editor);
    pintarCalendario();
}

QDate DTPicker::Value() const {
    return editor->date();
}

QDate DTPicker::Acotar(const QDate &fecha) {
    if (!fecha.isValid())
        return fecha;
    return std::clamp(fecha, MinDate(), MaxDate());
}

void DTPicker::setValue(const QDate &fecha) {
    if (!fecha.isValid())
        throw std::invalid_argument(
            QStringLiteral("%1: la fecha no es válida.").arg(Name()).toStdString());
    if (fecha < MinDate() || fecha > MaxDate())
        throw std::out_of_range(
            QStringLiteral("%1: la fecha %2 no está entre %3 y %4.")
                .arg(Name(), FechaATexto(fecha), FechaATexto(MinDate()), FechaATexto(MaxDate()))
                .toStdString());
    editor->setDate(fecha);
}

void DTPicker::setCalendarBackColor(ColorOLE c) {
    calBack = c;
    pintarCalendario();
}

void DTPicker::setCalendarForeColor(ColorOLE c) {
    calFore = c;
    pintarCalendario();
}

void DTPicker::setCalendarTitleBackColor(ColorOLE c) {
    calTitleBack = c;
    pintarCalendario();
}

void DTPicker::setCalendarTitleForeColor(ColorOLE c) {
    calTitleFore = c;
    pintarCalendario();
}

void DTPicker::pintarCalendario() {
    QCalendarWidget *calendario = editor->calendarWidget();
    if (!calendario)
        return;
    const QColor fondo = AColor(calBack), texto = AColor(calFore);
    const QColor fondoTitulo = AColor(calTitleBack), textoTitulo = AColor(calTitleFore);

    QPalette p = calendario->palette();
    p.setColor(QPalette::Base, fondo);
    p.setColor(QPalette::AlternateBase, fondo);
    p.setColor(QPalette::Text, texto);
    calendario->setPalette(p);

    // The days in one colour: the calendar's own red weekends would override it.
    QTextCharFormat dia;
    dia.setForeground(texto);
    for (int d = Qt::Monday; d <= Qt::Sunday; ++d)
        calendario->setWeekdayTextFormat(Qt::DayOfWeek(d), dia);

    // The title: the month bar and the row of weekday names.
    QTextCharFormat cabecera;
    cabecera.setBackground(fondoTitulo);
    cabecera.setForeground(textoTitulo);
    calendario->setHeaderTextFormat(cabecera);
    if (auto *barra =
            calendario->findChild<QWidget *>(QStringLiteral("qt_calendar_navigationbar"))) {
        QPalette pb = barra->palette();
        for (auto rol : {QPalette::Window, QPalette::Button, QPalette::Base})
            pb.setColor(rol, fondoTitulo);
        for (auto rol : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
            pb.setColor(rol, textoTitulo);
        barra->setPalette(pb);
        barra->setAutoFillBackground(true);
    }
}

} // namespace Pantalla
