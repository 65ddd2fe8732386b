#pragma once

#include "control.h"

#include <QDate>

class QDateEdit;

namespace Pantalla {

/// The date control (DTPicker): a date with a drop-down calendar, from 1601-01-01 to
/// 9999-12-31. Change is raised whenever Value changes, by the operator or by code.
class DTPicker : public Control {
    Q_OBJECT
  public:
    DTPicker(const QString &nombre, Control *contenedor, Form *form);

    QDate Value() const;
    void setValue(const QDate &fecha);
    static QDate MinDate() { return QDate(1601, 1, 1); }
    static QDate MaxDate() { return QDate(9999, 12, 31); }
    /// The date the control can show for `fecha`: the date itself between MinDate and MaxDate,
    /// the nearer end outside them (a stored 1600-12-31, a typo such as year 0026). An
    /// invalid date stays invalid.
    static QDate Acotar(const QDate &fecha);

    ColorOLE CalendarBackColor() const { return calBack; }
    void setCalendarBackColor(ColorOLE c);
    ColorOLE CalendarForeColor() const { return calFore; }
    void setCalendarForeColor(ColorOLE c);
    ColorOLE CalendarTitleBackColor() const { return calTitleBack; }
    void setCalendarTitleBackColor(ColorOLE c);
    ColorOLE CalendarTitleForeColor() const { return calTitleFore; }
    void setCalendarTitleForeColor(ColorOLE c);

  signals:
    void Change();

  private:
    void pintarCalendario();
    QDateEdit *editor;
    ColorOLE calBack = RGB(255, 255, 255), calFore = 0, calTitleBack = RGB(0, 0, 128),
             calTitleFore = RGB(255, 255, 255);
};

} // namespace Pantalla
