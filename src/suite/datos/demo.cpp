#include "demo.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/transaccion.h"

#include <QDate>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariantList>

using namespace ADODB;

namespace {

/// One prepared insert, run once per row with its bound values.
class Insercion {
  public:
    Insercion(QSqlDatabase base, const QString &sentencia) : q(base) {
        if (!q.prepare(sentencia))
            throw ErrorBD(q.lastError().text());
    }
    void operator()(const QVariantList &valores) {
        for (int i = 0; i < valores.size(); ++i)
            q.bindValue(i, valores[i]);
        if (!q.exec())
            throw ErrorBD(q.lastError().text());
    }

  private:
    QSqlQuery q;
};

/// A garment and whether its name is masculine, for the adjective to agree with it.
struct Prenda {
    QString nombre;
    bool masculino;
};
const QList<Prenda> prendas = {
    {QStringLiteral("Camiseta"), false}, {QStringLiteral("Pantalón"), true},
    {QStringLiteral("Falda"), false},    {QStringLiteral("Jersey"), true},
    {QStringLiteral("Chaqueta"), false}, {QStringLiteral("Vestido"), true},
    {QStringLiteral("Camisa"), false},   {QStringLiteral("Abrigo"), true},
    {QStringLiteral("Sudadera"), false}, {QStringLiteral("Bermuda"), false},
    {QStringLiteral("Blusa"), false},    {QStringLiteral("Cazadora"), false},
};
/// What qualifies a garment: its masculine and feminine forms, or one form for both.
const QList<std::pair<QString, QString>> calificativos = {
    {QStringLiteral("básico"), QStringLiteral("básica")},
    {QStringLiteral("de lino"), {}},
    {QStringLiteral("vaquero"), QStringLiteral("vaquera")},
    {QStringLiteral("de punto"), {}},
    {QStringLiteral("estampado"), QStringLiteral("estampada")},
    {QStringLiteral("de algodón"), {}},
    {QStringLiteral("clásico"), QStringLiteral("clásica")},
    {QStringLiteral("deportivo"), QStringLiteral("deportiva")},
    {QStringLiteral("de pana"), {}},
    {QStringLiteral("infantil"), {}},
    {QStringLiteral("de fiesta"), {}},
    {QStringLiteral("de invierno"), {}},
    {QStringLiteral("oversize"), {}},
    {QStringLiteral("entallado"), QStringLiteral("entallada")},
    {QStringLiteral("de rayas"), {}},
    {QStringLiteral("de temporada"), {}},
    {QStringLiteral("reversible"), {}},
    {QStringLiteral("de seda"), {}},
    {QStringLiteral("de cuadros"), {}},
    {QStringLiteral("térmico"), QStringLiteral("térmica")},
    {QStringLiteral("de verano"), {}},
    {QStringLiteral("acolchado"), QStringLiteral("acolchada")},
    {QStringLiteral("de lana"), {}},
    {QStringLiteral("elástico"), QStringLiteral("elástica")},
    {QStringLiteral("de ceremonia"), {}},
};

/// "Abrigo acolchado", "Falda acolchada": the garment with the adjective in its gender.
QString NombrePrenda(int codigo) {
    const Prenda &prenda = prendas[codigo % prendas.size()];
    const auto &[masculino, femenino] =
        calificativos[(codigo / prendas.size()) % calificativos.size()];
    return prenda.nombre + QLatin1Char(' ') +
           (prenda.masculino || femenino.isEmpty() ? masculino : femenino);
}
const QStringList secciones = {QStringLiteral("Mujer"), QStringLiteral("Hombre"),
                               QStringLiteral("Niños"), QStringLiteral("Complementos")};

constexpr int numProductos = 300;

/// A price with cents, as the shop writes it: 4.95 .. 129.95, in cents.
qint64 CentimosDe(int codigo) {
    return 495 + (codigo * 37 % 125) * 100;
}
/// `porcentaje` per cent of a price in cents, to the cent, a half cent rounded up.
qint64 Rebaja(qint64 centimos, int porcentaje) {
    return (centimos * porcentaje + 50) / 100;
}
/// A price in cents as the exact decimal text the database stores ("127.95"): never a
/// binary fraction such as 127.9499999999999.
QString Precio(qint64 centimos) {
    return QStringLiteral("%1.%2").arg(centimos / 100).arg(centimos % 100, 2, 10, QLatin1Char('0'));
}

} // namespace

void CargarTiendaDemo(ADODB::Connection &conexion) {
    // All of it or nothing, and part of the caller's unit when one is open: a shop never
    // stays half filled.
    ADODB::Transaccion unidad(conexion);
    QSqlDatabase base = conexion.Base();
    {
        Insercion opcion(base, QStringLiteral("insert into opciones (numdecimales, multitienda, "
                                              "nombretienda, tiponegocio, estiloaspecto,"
                                              " indicadoropciones, anchopantalla, altopantalla, "
                                              "idioma) values (?,?,?,?,?,?,?,?,?)"));
        opcion({2, QStringLiteral("N"), QStringLiteral("Moda Corvanta Centro"), QStringLiteral(""),
                0, 0, QVariant(), QVariant(), QStringLiteral("es")});
        Insercion(
            base,
            QStringLiteral("insert into opciones_terminal (identificador, empleado) values (?,?)"))(
            {QStringLiteral("CAJA1"), 1});
        Insercion empleado(
            base,
            QStringLiteral("insert into empleados (codigo, nombre, apellidos) values (?,?,?)"));
        empleado({1, QStringLiteral("María"), QStringLiteral("López García")});
        empleado({2, QStringLiteral("Jorge"), QStringLiteral("Ibáñez Ruiz")});
        Insercion(base, QStringLiteral(
                            "insert into configuracionregional (segundoimpuesto, nombreimpuesto1,"
                            " bandera, nombre) values (?,?,?,?)"))(
            {false, QStringLiteral("IVA"), QStringLiteral("fotos/bandera.gif"),
             QStringLiteral("España")});

        Insercion talla(
            base, QStringLiteral("insert into tallas (codigo, descripcioncorta) values (?,?)"));
        const QStringList tallas = {QStringLiteral("XS"), QStringLiteral("S"),
                                    QStringLiteral("M"),  QStringLiteral("L"),
                                    QStringLiteral("XL"), QStringLiteral("XXL")};
        for (int i = 0; i < tallas.size(); ++i)
            talla({i + 1, tallas[i]});
        Insercion color(base,
                        QStringLiteral("insert into colorestextil (codigo, nombre) values (?,?)"));
        const QStringList colores = {QStringLiteral("Blanco"),        QStringLiteral("Negro"),
                                     QStringLiteral("Azul marino"),   QStringLiteral("Rojo"),
                                     QStringLiteral("Verde botella"), QStringLiteral("Gris perla")};
        for (int i = 0; i < colores.size(); ++i)
            color({i + 1, colores[i]});

        Insercion producto(
            base, QStringLiteral("insert into productos (codigo, codigocliente, nombre, precio,"
                                 " seccion, borrar) values (?,?,?,?,?,?)"));
        Insercion extra(
            base, QStringLiteral(
                      "insert into productos_codigosextra (codigo, codigo_extra) values (?,?)"));
        Insercion variante(
            base, QStringLiteral("insert into productostextil (codigopadre, codigohijo, talla,"
                                 " color, codcliente, precio) values (?,?,?,?,?,?)"));
        for (int codigo = 1; codigo <= numProductos; ++codigo) {
            const QString nombre = NombrePrenda(codigo);
            const bool borrado = codigo % 23 == 0;
            producto({codigo, QStringLiteral("%1").arg(840000 + codigo, 7, 10, QLatin1Char('0')),
                      nombre, Precio(CentimosDe(codigo)), secciones[codigo % secciones.size()],
                      borrado ? 1 : 0});
            if (codigo % 10 == 0)
                extra({codigo,
                       QStringLiteral("EAN84%1").arg(codigo * 7919, 8, 10, QLatin1Char('0'))});
            // One product in three comes in sizes and colours; a few of the variants have a
            // code or a price of their own, and one refers to a size the shop no longer has.
            if (codigo % 3 == 0) {
                for (int t = 2; t <= 4; ++t)
                    for (int c = 1; c <= 2 + codigo % 2; ++c) {
                        const QString hijo = QStringLiteral("%1%2")
                                                 .arg(t, 2, 10, QLatin1Char('0'))
                                                 .arg(c, 2, 10, QLatin1Char('0'));
                        const QVariant codCliente =
                            (t == 4 && c == 1)
                                ? QVariant(QStringLiteral("V%1-%2").arg(codigo).arg(hijo))
                                : QVariant(QString());
                        const QVariant precio =
                            t == 4 ? QVariant(Precio(CentimosDe(codigo) + 300)) : QVariant();
                        variante(
                            {codigo, hijo, codigo == 9 && t == 4 ? 99 : t, c, codCliente, precio});
                    }
            }
        }

        Insercion cabecera(
            base,
            QStringLiteral("insert into cabecera_precio (identificador, descripcion, fechaalta,"
                           " preciovalidodesde, preciovalidohasta) values (?,?,?,?,?)"));
        cabecera({1, QStringLiteral("Tarifa general 2026"), QDate(2025, 12, 15), QDate(2026, 1, 1),
                  QDate(2026, 12, 31)});
        cabecera({2, QStringLiteral("Rebajas de invierno"), QDate(2026, 11, 2), QDate(2027, 1, 7),
                  QDate(2027, 2, 28)});
        cabecera({3, QStringLiteral("Clientes VIP"), QDate(2026, 3, 1), QDate(2026, 3, 1),
                  QDate(2027, 3, 1)});
        cabecera({4, QStringLiteral("Black Friday"), QDate(2026, 11, 20), QDate(2026, 11, 27),
                  QDate(2026, 11, 30)});
        Insercion detalle(
            base, QStringLiteral("insert into detalle_precio (identificador, producto, precio,"
                                 " codproductotextil) values (?,?,?,?)"));
        for (int codigo = 4; codigo <= numProductos; codigo += 7)
            detalle({1, codigo, Precio(CentimosDe(codigo) - 100), QVariant()});
        for (int codigo = 3; codigo <= 60; codigo += 3) {
            detalle({2, codigo, Precio(Rebaja(CentimosDe(codigo), 70)), QStringLiteral("0201")});
            detalle({2, codigo, Precio(Rebaja(CentimosDe(codigo), 70)), QStringLiteral("0301")});
        }
        for (int codigo = 1; codigo <= 40; codigo += 5)
            detalle({3, codigo, Precio(Rebaja(CentimosDe(codigo), 90)), QStringLiteral("-1")});
        Insercion(base, QStringLiteral(
                            "insert into relaciones_fijas (indice, daton, dato1) values (?,?,?)"))(
            {QStringLiteral("TarifaAplicada"), 3, QStringLiteral("cliente 12")});
    }
    unidad.Commit();
}
