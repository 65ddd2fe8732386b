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
class Grid;

/// The business type of the size-and-colour shops.
inline const QString TallaColor = QStringLiteral("TALLACOLOR");

/// A shop for one test: a fresh suite database as the session's connection, the session as
/// start-up would leave it (design size, look 0, the given business type), helpers that store
/// products, variants and price lists, and the ways into the editor. The destructor ends the
/// run (screens, services and session) as the program's end does. Setup failures raise ErrorBD.
class TiendaPrueba {
  public:
    explicit TiendaPrueba(const QString &tipoNegocio = {});
    ~TiendaPrueba();
    TiendaPrueba(const TiendaPrueba &) = delete;
    TiendaPrueba &operator=(const TiendaPrueba &) = delete;

    BaseDatosPrueba &db() { return *base; }
    void Ejecutar(const QString &sql, const QVariantList &valores = {});
    QVariant Valor(const QString &sql, const QVariantList &valores = {});

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
    /// Makes the database refuse `suceso` ("before delete on relaciones_fijas") with `texto`,
    /// for the rows meeting `condicion` (on new.*), or every row when it is empty.
    void Rechazar(const QString &suceso, const QString &texto, const QString &condicion = {});
    /// Every row of the price list tables as text, sorted: equal dumps mean nothing changed.
    QStringList Volcado();

    /// The register, loaded and shown.
    FrmListas &Registro();
    /// Double-clicks the register's row of list `lista` with the mouse, runs `mientras` once
    /// the editor is shown, then leaves it by `cmdSalir` (or by the close box). Gives false
    /// when the editor never showed or didn't unload itself on the way out.
    enum class Salida { cmdSalir, CierreVentana };
    bool AbrirEditor(int lista, const std::function<void(FrmTarifas &)> &mientras,
                     Salida salida = Salida::cmdSalir);
    /// Loads the editor on list `lista` as the hand-over's first touch does, without
    /// showing it: the register (loaded, not shown) holds the code in its lblCodigo.
    FrmTarifas &CargarEditor(int lista);
    /// The editor on list `lista` as the register leaves it: loaded, holding the code, shown,
    /// with the catalogue slid into place.
    FrmTarifas &Abierto(int lista = 1);

  private:
    std::unique_ptr<BaseDatosPrueba> base;
    Principal::Vida vida; ///< the screens, services and session of this shop's run: they end
                          ///< before the database goes (a server drops no database in use)
};

/// Runs `accion`; when the editor shows meanwhile, runs `mientras` in it and leaves it as
/// `salida` says. True when the editor showed and unloaded itself on the way out.
bool ConEditor(const std::function<void()> &accion,
               const std::function<void(FrmTarifas &)> &mientras = {},
               TiendaPrueba::Salida salida = TiendaPrueba::Salida::cmdSalir);

/// The cells of row `fila` of `g`.
QStringList Fila(const Grid &g, int fila);
/// The data rows of `g` whose column `columna` holds `valor`.
QList<int> FilasCon(const Grid &g, int columna, const QString &valor);
/// The register's row of list `lista`, -1 when it is not listed.
int FilaRegistro(int lista);

/// Clicks with the mouse the catalogue's row that shows product `codigo` (and variant `hijo`).
bool ClicProducto(FrmTarifas &e, const QString &codigo, const QString &hijo = {});
/// Types `texto` into the price box and presses Enter.
void Teclear(FrmTarifas &e, const QString &texto);
/// The operator picks the catalogue row of product `codigo` (variant `hijo` in the
/// size-and-colour mode), types `precio` and accepts. False when the row is not there.
bool GuardarPrecio(FrmTarifas &e, const QString &codigo, const QString &precio,
                   const QString &hijo = {});
