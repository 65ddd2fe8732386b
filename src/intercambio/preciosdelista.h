#pragma once

#include "motor/contexto.h"
#include "motor/importe.h"

#include <QDate>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

/// The statements of a list's prices in the order grid_Pseleccionados shows them: the editor
/// lists with them, and an export or a printout follows the same order. `lista` is a list's
/// code (digits only: it stands bare in the statement). Columns: codigocliente, nombre, codigo
/// (plain) or producto, codproductotextil (size and colour), precio (the list's) and
/// precioventa (the product's standard price).
QString SentenciaPreciosLista(const QString &lista);
QString SentenciaPreciosLista_textil(const QString &lista);

/// A price as the database gives it (a decimal comes as a double, or as text from some
/// drivers): exact to the 15 digits a price may have. None for Null or a value that is no
/// number.
std::optional<Importe> ImporteDeValor(const QVariant &valor);

/// One price of a list as it leaves the program: the shop's code, the variant's own code, the
/// product's name, its size and colour (size-and-colour shop), its standard price and the
/// list's. A price the database holds as something that is no number is none.
struct FilaPrecio {
    QString codigo;
    QString variante;
    QString nombre;
    QString talla;
    QString color;
    std::optional<Importe> precioVenta;
    std::optional<Importe> precio;
};

/// Every price of `lista`, in the grid's order, one call of `alFila` each. In the size-and-
/// colour shop the standard price is the variant's own, else its product's. Raises ErrorBD.
/// Gives the number of rows.
int LeerPreciosLista(const ContextoMotor &contexto, qint32 lista,
                     const std::function<void(const FilaPrecio &)> &alFila);

/// The list `texto` names: its code, or else its exact name. None when no list answers.
std::optional<qint32> BuscarLista(ADODB::Connection &conexion, const QString &texto);

/// A list's header, for what names it on paper or in a message.
struct CabeceraLista {
    qint32 codigo = 0;
    QString nombre;
    QDate desde;
    QDate hasta;
};
std::optional<CabeceraLista> LeerCabeceraLista(ADODB::Connection &conexion, qint32 lista);
