#pragma once

// The small shops the exchange tests import into and export from: a plain one and a
// size-and-colour one, each with list 1 priced.
#include "apoyo/basedatosprueba.h"
#include "intercambio/preciosdelista.h"
#include "motor/contexto.h"
#include "platform/datos/recordset.h"

#include <QStringList>

class TiendaIntercambio {
  public:
    explicit TiendaIntercambio(bool tallaColor) {
        contexto.conexion = &db.Conexion();
        contexto.terminal = QStringLiteral("CAJA1");
        contexto.numDecimales = 2;
        contexto.tallaColor = tallaColor;
        db.Ejecutar("insert into opciones (numdecimales, tiponegocio, nombretienda) values (2, ?, "
                    "'Moda Prueba')",
                    {tallaColor ? QStringLiteral("TALLACOLOR") : QString()});
        Producto(1, "A1", "Abrigo", "100");
        Producto(2, "B2", "Blusa", "50");
        Producto(3, "C3", "Camisa", "30");
        Producto(4, "D4", "Descatalogado", "10", 1);
        Producto(5, "E5", "Estola", "20");
        db.Ejecutar("insert into productos_codigosextra values (2, '8400000000022'), (2, 'XB-2'), "
                    "(4, '8400000000044')");
        db.Ejecutar("insert into cabecera_precio values (1, 'General', '2026-01-01', "
                    "'2026-01-01', '2026-12-31')");
        if (!tallaColor) {
            Precio(1, "90", {});
            Precio(2, "45", {});
            Precio(4, "9", {});
            return;
        }
        db.Ejecutar("insert into tallas values (1, 'S'), (2, 'M')");
        db.Ejecutar("insert into colorestextil values (1, 'Rojo')");
        db.Ejecutar("insert into productostextil values (1, '01', 1, 1, 'A1-S-R', 110), "
                    "(1, '02', 2, 1, 'A1-M-R', null), (2, '01', 1, 1, 'B2-S-R', null)");
        Precio(1, "100", "01");
        Precio(1, "100", "02");
        Precio(3, "30", "-1");
    }

    void Producto(int codigo, const char *codigocliente, const char *nombre, const char *precio,
                  int borrar = 0) {
        db.Ejecutar("insert into productos values (?, ?, ?, ?, 'S', ?)",
                    {codigo, codigocliente, nombre, precio, borrar});
    }
    void Precio(int producto, const char *precio, const QVariant &variante) {
        db.Ejecutar("insert into detalle_precio values (1, ?, ?, ?)",
                    {producto, precio,
                     variante.isValid() ? variante : QVariant(QMetaType::fromType<QString>())});
    }

    /// The list's rows as "product/variant=price", sorted: what an import must change exactly.
    QStringList Precios(qint32 lista = 1) {
        QStringList filas;
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select producto, codproductotextil, precio from detalle_precio "
                               "where identificador = ?"),
                {lista}, db.Conexion());
        for (; !rs.Eof(); rs.MoveNext()) {
            const std::optional<Importe> precio = ImporteDeValor(rs.Fields(2).Value());
            filas << rs.Fields(0).Texto() + QLatin1Char('/') + rs.Fields(1).Texto() +
                         QLatin1Char('=') + (precio ? precio->Texto(2) : QStringLiteral("?"));
        }
        filas.sort();
        return filas;
    }

    BaseDatosPrueba db;
    ContextoMotor contexto;
};
