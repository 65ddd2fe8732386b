#pragma once

#include "apoyo/basedatosprueba.h"
#include "session/vida.h"

#include <QDate>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

class FrmListas;
class FrmTarifas;

/// A shop for one editor test: a fresh SQLite suite database as the session's connection,
/// the session as start-up would leave it (design size, look 0, the given business type),
/// helpers that store products, variants and price lists, and the two ways into the editor:
/// the register's double click, or a straight load. The destructor ends the run (screens,
/// services and session) as the program's end does. Setup failures raise ErrorBD.
class TiendaPrueba {
public:
    explicit TiendaPrueba(const QString &tipoNegocio = {});
    ~TiendaPrueba();
    TiendaPrueba(const TiendaPrueba &) = delete;
    TiendaPrueba &operator=(const TiendaPrueba &) = delete;

    BaseDatosPrueba &db() { return *base; }
    void Ejecutar(const QString &sql, const QVariantList &valores = {});

    /// The display the screens are scaled to: `factor` times the design size across, and
    /// `factorAlto` (the same when 0) times it down.
    void Escala(double factor, double factorAlto = 0);

    // A QVariant() stores Null.
    void Producto(qint64 codigo, const QVariant &codigocliente, const QVariant &nombre,
                  const QVariant &precio, const QVariant &seccion = QStringLiteral("S"),
                  int borrar = 0);
    void Variante(qint64 padre, const QVariant &hijo, const QVariant &talla, const QVariant &color,
                  const QVariant &codcliente = {}, const QVariant &precio = {});
    void Talla(int codigo, const QString &descripcion);
    void Color(int codigo, const QString &nombre);
    void Lista(int identificador, const QString &nombre, QDate desde = QDate(2026, 1, 1),
               QDate hasta = QDate(2026, 12, 31));
    void Precio(int lista, qint64 producto, const QVariant &precio,
                const QVariant &codproductotextil = {});
    /// `cuantos` products coded 1.. with shop code "C<n>", name "Producto <n, 6 digits>",
    /// price n + 0.5, section "S", all live; written in one statement.
    void Catalogo(int cuantos);

    /// The register, loaded and shown.
    FrmListas &Registro();
    /// Double-clicks the register's row of list `lista` with the mouse, runs `mientras` once
    /// the editor is shown, then leaves it by `cmdSalir` (or by the close box). Gives false
    /// when the editor never showed or didn't unload itself on the way out; no editor is left
    /// behind either way.
    enum class Salida { cmdSalir, CierreVentana };
    bool AbrirEditor(int lista, const std::function<void(FrmTarifas &)> &mientras,
                     Salida salida = Salida::cmdSalir);
    /// Loads the editor on list `lista` as the hand-over's first touch does, without
    /// showing it: the register (loaded, not shown) holds the code in its lblCodigo.
    FrmTarifas &CargarEditor(int lista);

private:
    std::unique_ptr<BaseDatosPrueba> base;
    Principal::Vida vida; ///< the screens, services and session of this shop's run: they end
                          ///< before the database goes (a server drops no database in use)
};
