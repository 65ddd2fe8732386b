// The dry run of an import: each line of the file finds its product (or its size and colour)
// and its price, or is refused with its reason; what is left is compared with the list.
#include "csv.h"
#include "importacion.h"
#include "indicetextos.h"
#include "insertarnueva.h"
#include "preciosdelista.h"

#include "motor/redondeo.h"
#include "motor/sqlmotor.h"
#include "platform/datos/recordset.h"

#include <QHash>
#include <QStringDecoder>
#include <QVarLengthArray>
#include <algorithm>
#include <future>

namespace {

using Clave = std::pair<qint32, QString>; ///< (product, codproductotextil)

/// The columns of the header the import reads; -1 where it has none.
struct Columnas {
    int codigo = -1;
    int variante = -1;
    int precio = -1;
};

/// Where the header's column `nombre` goes in `c`; none for a column the import leaves aside.
int *ColumnaLeida(Columnas &c, const QString &nombre) {
    const auto es = [&nombre](QLatin1StringView otro) {
        return nombre.compare(otro, Qt::CaseInsensitive) == 0;
    };
    return es(QLatin1StringView("codigo"))     ? &c.codigo
           : es(QLatin1StringView("variante")) ? &c.variante
           : es(QLatin1StringView("precio"))   ? &c.precio
                                               : nullptr;
}

Columnas BuscarColumnas(const QStringList &cabecera) {
    Columnas c;
    for (int i = 0; i < int(cabecera.size()); ++i) {
        int *columna = ColumnaLeida(c, cabecera[i]);
        if (columna && *columna < 0)
            *columna = i;
    }
    return c;
}

/// One row's share of a fingerprint of a set of rows: the fingerprints of two reads are
/// equal when they read the same rows, in whatever order (each row's hash is added).
quint64 Huella(int tabla, qint32 numero, bool nulo, QStringView texto, bool marca) {
    const size_t h = qHashMulti(0, tabla, numero, nulo, texto, marca);
    // Spread over 64 bits, so that a sum of many rows keeps them apart.
    quint64 x = quint64(h) + 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

struct Producto {
    qint32 codigo = 0;
    bool borrado = false;
};
struct Variante {
    qint32 padre = 0;
    QString hijo;
    bool borrado = false;
};

/// The texts of a column read row after row, each as a view, without a QString of its own
/// when the database gives it as UTF-8.
class LectorTextos {
  public:
    /// `campo`'s text; valid until the next call.
    QStringView Texto(const ADODB::Field &campo) {
        QByteArrayView bytes;
        if (!campo.TextoUtf8(bytes)) {
            otro = campo.Texto();
            return otro;
        }
        letras.resize(bytes.size());
        const QChar *fin = utf8.appendToBuffer(letras.data(), bytes);
        return QStringView(letras.data(), fin - letras.data());
    }

  private:
    QStringDecoder utf8{QStringDecoder::Utf8, QStringDecoder::Flag::Stateless};
    QVarLengthArray<QChar, 64> letras;
    QString otro; ///< the text of a database that doesn't give UTF-8
};

/// The catalogue as the import searches it, read once for the whole file.
struct Catalogo {
    IndiceTextos<Producto> porCodigoTienda;
    IndiceTextos<qint32> porCodigoExtra; ///< in small letters
    /// Whether each product is deleted, by product in order (the products are read so).
    std::vector<std::pair<qint32, bool>> borrados;
    QHash<QString, Variante> porCodigoVariante;
    QHash<qint32, QStringList> variantesDe;
    quint64 huella = 0; ///< of every row read, in any order (Huella)

    void Leer(ADODB::Connection &conexion, bool tallaColor) {
        ADODB::Recordset rs;
        LectorTextos codigos;
        rs.Recorrer(
            QStringLiteral("select codigo, codigocliente, borrar from productos order by codigo"),
            conexion, [&] {
                const ADODB::Field codigocliente = rs.Fields(1);
                const Producto p{rs.Fields(0).Entero(), rs.Fields(2).Value().toLongLong() != 0};
                const QStringView texto = codigos.Texto(codigocliente);
                huella += Huella(1, p.codigo, codigocliente.EsNulo(), texto, p.borrado);
                borrados.emplace_back(p.codigo, p.borrado);
                if (codigocliente.EsNulo())
                    return;
                // A live product answers for its code before a deleted one of the same code.
                const auto [sitio, nuevo] = porCodigoTienda.Insertar(texto, p);
                if (!nuevo && sitio->borrado && !p.borrado)
                    *sitio = p;
            });
        // Read in order of code already, but for a code a database keeps as a text.
        if (!std::is_sorted(borrados.cbegin(), borrados.cend()))
            std::sort(borrados.begin(), borrados.end());
        rs.Open(QStringLiteral("select codigo, codigo_extra from productos_codigosextra order by "
                               "codigo"),
                conexion);
        {
            const ADODB::Field codigo = rs.Fields(0), extra = rs.Fields(1);
            for (; !rs.Eof(); rs.MoveNext()) {
                huella += Huella(2, qint32(codigo.Value().toLongLong()), extra.EsNulo(),
                                 extra.Texto(), false);
                if (!extra.EsNulo())
                    porCodigoExtra.Insertar(extra.Texto().toLower(),
                                            qint32(codigo.Value().toLongLong()));
            }
        }
        if (!tallaColor)
            return;
        rs.Open(QStringLiteral("select productostextil.codigopadre, productostextil.codigohijo, "
                               "productostextil.codcliente, productos.borrar from productostextil "
                               "join productos on productos.codigo = productostextil.codigopadre"),
                conexion);
        const ADODB::Field padre = rs.Fields(0), hijo = rs.Fields(1), codcliente = rs.Fields(2),
                           borrar = rs.Fields(3);
        for (; !rs.Eof(); rs.MoveNext()) {
            huella += Huella(3, qint32(padre.Value().toLongLong()), hijo.EsNulo(),
                             QString(hijo.Texto() + QChar(0) + codcliente.Texto()),
                             borrar.Value().toLongLong() != 0);
            if (hijo.EsNulo())
                continue;
            const Variante v{qint32(padre.Value().toLongLong()), hijo.Texto(),
                             borrar.Value().toLongLong() != 0};
            variantesDe[v.padre].append(v.hijo);
            if (!codcliente.Texto().isEmpty())
                InsertarNueva(porCodigoVariante, codcliente.Texto(), v);
        }
    }

    /// Whether product `codigo` is deleted; none for a product the catalogue doesn't have.
    std::optional<bool> Borrado(qint32 codigo) const {
        const auto p =
            std::lower_bound(borrados.cbegin(), borrados.cend(), std::pair(codigo, false));
        if (p == borrados.cend() || p->first != codigo)
            return std::nullopt;
        return p->second;
    }

    /// The product of a code, as the editor's search finds it: the shop's code, then an extra
    /// code. None when neither knows it.
    std::optional<Producto> BuscarProducto(const QString &codigo) const {
        const Producto *p = porCodigoTienda.Hallar(codigo);
        if (p && !p->borrado)
            return *p;
        if (const qint32 *e = porCodigoExtra.Hallar(codigo.toLower()))
            return Producto{*e, Borrado(*e).value_or(false)};
        if (p)
            return *p;
        return std::nullopt;
    }
};

/// The rows a line names: one but for a garment priced in every size and colour.
using Claves = QVarLengthArray<Clave, 1>;

/// What one line of the file asks for, once read.
struct LineaLeida {
    int numero = 0;
    QString motivo; ///< empty: valid
    std::optional<Importe> precio;
    Claves claves;
    QVarLengthArray<int, 1> nombradas; ///< where each of `claves` is among the rows named
};

QString Entre(const QString &texto) {
    return QStringLiteral("«") + texto + QStringLiteral("»");
}

/// The rows the codes of a line name, or why they name none.
QString BuscarClaves(const QString &codigo, const QString &variante, const Catalogo &catalogo,
                     const ContextoMotor &contexto, Claves &claves) {
    std::optional<Producto> producto;
    if (!codigo.isEmpty()) {
        producto = catalogo.BuscarProducto(codigo);
        if (!producto) {
            return QStringLiteral("código %1 desconocido").arg(Entre(codigo));
        }
        if (producto->borrado) {
            return QStringLiteral("el producto %1 está borrado").arg(Entre(codigo));
        }
    }
    if (!variante.isEmpty()) {
        if (!contexto.tallaColor) {
            return QStringLiteral("la variante %1 no cabe en una tienda sin tallas ni "
                                  "colores")
                .arg(Entre(variante));
        }
        const auto v = catalogo.porCodigoVariante.constFind(variante);
        if (v == catalogo.porCodigoVariante.cend()) {
            return QStringLiteral("variante %1 desconocida").arg(Entre(variante));
        }
        if (v->borrado) {
            return QStringLiteral("el producto de la variante %1 está borrado")
                .arg(Entre(variante));
        }
        if (producto && producto->codigo != v->padre) {
            return QStringLiteral("la variante %1 no es del producto %2")
                .arg(Entre(variante), Entre(codigo));
        }
        claves.push_back({v->padre, v->hijo});
        return QString();
    }
    if (!contexto.tallaColor) {
        claves.push_back({producto->codigo, QString()});
        return QString();
    }
    // A garment priced the same in every size and colour; a product without them is priced
    // as its own row.
    const QStringList hijos = catalogo.variantesDe.value(producto->codigo);
    if (hijos.isEmpty())
        claves.push_back({producto->codigo, QStringLiteral("-1")});
    for (const QString &hijo : hijos)
        claves.push_back({producto->codigo, hijo});
    return QString();
}

/// Reads one line: what its codes find, then its price.
LineaLeida LeerLinea(const LineaCsv &linea, const Columnas &col, int campos,
                     const Catalogo &catalogo, const ContextoMotor &contexto) {
    LineaLeida leida;
    leida.numero = linea.numero;
    if (linea.campos.size() < campos) {
        leida.motivo = QStringLiteral("la línea tiene %1 campos y la cabecera %2")
                           .arg(linea.campos.size())
                           .arg(campos);
        return leida;
    }
    const QString codigo = col.codigo >= 0 ? linea.campos[col.codigo].trimmed() : QString();
    const QString variante = col.variante >= 0 ? linea.campos[col.variante].trimmed() : QString();
    const QString textoPrecio = linea.campos[col.precio].trimmed();
    if (codigo.isEmpty() && variante.isEmpty()) {
        leida.motivo = QStringLiteral("la línea no tiene código");
        return leida;
    }
    // The row first, so that "sustituir" keeps a row whose line is refused for its price.
    leida.motivo = BuscarClaves(codigo, variante, catalogo, contexto, leida.claves);
    if (!leida.motivo.isEmpty())
        return leida;
    const std::optional<Importe> precio = Importe::Leer(textoPrecio);
    if (!precio) {
        leida.motivo = QStringLiteral("el precio %1 no es un número").arg(Entre(textoPrecio));
        return leida;
    }
    if (precio->Signo() < 0) {
        leida.motivo = QStringLiteral("el precio %1 es negativo").arg(Entre(textoPrecio));
        return leida;
    }
    // Stored with the shop's decimals, as the screens show it (a price read has no trailing
    // zeros: one with no more decimals than the shop's is already on its step).
    leida.precio = precio->Escala() <= contexto.numDecimales
                       ? precio
                       : RedondearAPaso(*precio, PasoPorDefecto(contexto.numDecimales));
    if (!leida.precio)
        leida.motivo = QStringLiteral("el precio %1 no es un número").arg(Entre(textoPrecio));
    return leida;
}

/// A price row the list has now: its name for the engine's writer, and its price.
struct Guardada {
    QVariant fila;
    std::optional<Importe> precio;
};

/// The list's prices now, by product and variant.
QHash<Clave, Guardada> PreciosGuardados(const ContextoMotor &contexto, qint32 lista,
                                        quint64 &huella) {
    QHash<Clave, Guardada> guardados;
    const SQLMotor::Motor motor = SQLMotor::De(*contexto.conexion);
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select d.producto, d.codproductotextil, d.precio, ") +
                SQLMotor::ClaveFila(motor, QStringLiteral("d")) +
                QStringLiteral(" as fila from detalle_precio d where d.identificador = ?"),
            {lista}, *contexto.conexion);
    const ADODB::Field producto = rs.Fields(0), variante = rs.Fields(1), precio = rs.Fields(2),
                       fila = rs.Fields(3);
    guardados.reserve(rs.RecordCount());
    huella = 0;
    for (; !rs.Eof(); rs.MoveNext()) {
        const Clave clave{qint32(producto.Value().toLongLong()),
                          contexto.tallaColor ? variante.Texto() : QString()};
        const Guardada g{fila.Value(), ImporteDeValor(precio.Value())};
        // The row's name and its price as stored: another terminal's change of either shows.
        huella += Huella(4, clave.first, precio.EsNulo(),
                         QString(clave.second + QChar(0) + g.fila.toString() + QChar(0) +
                                 precio.Value().toString()),
                         g.precio.has_value());
        guardados.insert(clave, g);
    }
    return guardados;
}

/// The database's state as this connection sees it, on SQLite: the count of other
/// connections' commits (data_version) and of the rows it changed itself. Read inside a unit
/// of work, it is the state of what that unit reads. Nothing elsewhere (-1, -1).
std::pair<qint64, qint64> EstadoBase(ADODB::Connection &conexion) {
    if (SQLMotor::De(conexion) != SQLMotor::Motor::SQLite)
        return {-1, -1};
    QSqlQuery ajena = SQLMotor::Ejecutar(conexion, QStringLiteral("pragma data_version"));
    QSqlQuery propia = SQLMotor::Ejecutar(conexion, QStringLiteral("select total_changes()"));
    if (!ajena.next() || !propia.next())
        return {-1, -1};
    return {ajena.value(0).toLongLong(), propia.value(0).toLongLong()};
}

/// On PostgreSQL, the server's fingerprint of what a dry run reads: for the catalogue's tables
/// and the list's rows, their count and the sum of a hash of each row (its ctid too, which
/// names it for the writer and changes when another terminal updates it). Summed on the
/// server, so that checking it again reads no row. Empty elsewhere.
QString HuellaServidor(const ContextoMotor &contexto, qint32 lista) {
    if (SQLMotor::De(*contexto.conexion) != SQLMotor::Motor::PostgreSQL)
        return QString();
    const auto suma = [](const QString &fila, const QString &desde) -> QString {
        return QStringLiteral("(select count(*)::text || ':' || coalesce(sum(hashtextextended(") +
               fila + QStringLiteral(", 0)), 0)::text from ") + desde + QLatin1Char(')');
    };
    // A Null and a text are told apart by the 't' before every text.
    QStringList partes = {
        suma(QStringLiteral("codigo::text || ':' || coalesce('t' || codigocliente, 'n') || ':' "
                            "|| coalesce(borrar::text, 'n')"),
             QStringLiteral("productos")),
        suma(QStringLiteral("codigo::text || ':' || coalesce('t' || codigo_extra, 'n')"),
             QStringLiteral("productos_codigosextra")),
        suma(QStringLiteral("ctid::text || ':' || producto::text || ':' || "
                            "coalesce('t' || codproductotextil, 'n') || ':' || "
                            "coalesce('t' || precio::text, 'n')"),
             QStringLiteral("detalle_precio where identificador = ?")),
    };
    if (contexto.tallaColor)
        partes << suma(QStringLiteral("codigopadre::text || ':' || coalesce('t' || codigohijo, "
                                      "'n') || ':' || coalesce('t' || codcliente, 'n')"),
                       QStringLiteral("productostextil"));
    QSqlQuery q = SQLMotor::Ejecutar(
        *contexto.conexion, QStringLiteral("select ") + partes.join(QStringLiteral(" || '/' || ")),
        {lista});
    return q.next() ? q.value(0).toString() : QString();
}

/// Work given to another thread; done in this one, when it waits for it, if the system has no
/// thread to give.
constexpr auto EnOtroHilo = std::launch::async | std::launch::deferred;

} // namespace

PlanImportacion PlanearImportacion(const ContextoMotor &contexto, qint32 lista,
                                   const QByteArray &datos, ModoImportacion modo) {
    PlanImportacion plan;
    // The file is read on a thread of its own while this one reads the catalogue: a big
    // file's dry run takes the longer of the two rather than both. A file that can't be
    // imported is still said as such; only the catalogue was read for nothing.
    std::future<FicheroCsv> lectura = std::async(EnOtroHilo, [&datos] {
        return LeerCsv(datos, [](const QString &nombre) {
            Columnas c;
            return ColumnaLeida(c, nombre) != nullptr;
        });
    });
    // Taken before anything is read: a change made while the dry run reads shows as one.
    const auto [versionAjena, cambiosPropios] = EstadoBase(*contexto.conexion);
    plan.origen.servidor = HuellaServidor(contexto, lista);
    Catalogo catalogo;
    catalogo.Leer(*contexto.conexion, contexto.tallaColor);

    FicheroCsv fichero = lectura.get();
    if (!fichero.error.isEmpty()) {
        plan.error = fichero.error;
        return plan;
    }
    const Columnas col = BuscarColumnas(fichero.cabecera);
    if ((col.codigo < 0 && col.variante < 0) || col.precio < 0) {
        plan.error = QStringLiteral("La cabecera del fichero no nombra las columnas que hacen "
                                    "falta: un código (codigo o variante) y precio.");
        return plan;
    }
    if (fichero.lineas.isEmpty()) {
        plan.error = QStringLiteral("El fichero solo tiene la línea de cabecera: no hay precios "
                                    "que importar.");
        return plan;
    }

    // Each line is read on its own, so the file's second half is read on another thread.
    std::vector<LineaLeida> lineas(size_t(fichero.lineas.size()));
    const auto leer = [&](size_t desde, size_t hasta) {
        for (size_t i = desde; i < hasta; ++i)
            lineas[i] = LeerLinea(fichero.lineas[qsizetype(i)], col, int(fichero.cabecera.size()),
                                  catalogo, contexto);
    };
    if (lineas.size() < 1000) {
        leer(0, lineas.size());
    } else {
        const size_t mitad = lineas.size() / 2;
        std::future<void> segunda = std::async(EnOtroHilo, leer, mitad, lineas.size());
        leer(0, mitad);
        segunda.get();
    }
    // The file's texts are no longer needed: a hundred thousand lines are freed on another
    // thread while this one makes the plan.
    std::future<void> liberar = std::async(
        EnOtroHilo, [lineasCsv = std::move(fichero.lineas)]() mutable { lineasCsv.clear(); });

    // Every row a line names, valid or not ("sustituir" leaves them all), with the first
    // valid line that names it: the same row on two lines with different prices is refused on
    // both, as neither says which is meant.
    struct Nombrada {
        int primera = -1;   ///< index of the first valid line naming it
        bool hecha = false; ///< already in the plan
    };
    QHash<Clave, int> indice; // a row named -> its place in `nombradas`
    indice.reserve(qsizetype(lineas.size()));
    std::vector<Nombrada> nombradas;
    nombradas.reserve(lineas.size());
    for (int i = 0; i < int(lineas.size()); ++i) {
        LineaLeida &leida = lineas[size_t(i)];
        for (const Clave &clave : std::as_const(leida.claves)) {
            const qsizetype antes = indice.size();
            int &sitio = indice[clave];
            if (indice.size() != antes) {
                sitio = int(nombradas.size());
                nombradas.emplace_back();
            }
            leida.nombradas.push_back(sitio);
            Nombrada &nombrada = nombradas[size_t(sitio)];
            if (!leida.motivo.isEmpty())
                continue;
            if (nombrada.primera < 0) {
                nombrada.primera = i;
                continue;
            }
            LineaLeida &otra = lineas[size_t(nombrada.primera)];
            if (otra.precio == leida.precio)
                continue;
            const QString motivo =
                QStringLiteral("el mismo producto tiene otro precio en la línea %1");
            if (otra.motivo.isEmpty())
                otra.motivo = motivo.arg(leida.numero);
            leida.motivo = motivo.arg(otra.numero);
        }
    }

    const QHash<Clave, Guardada> guardados = PreciosGuardados(contexto, lista, plan.origen.precios);
    plan.origen.lista = lista;
    plan.origen.modo = modo;
    plan.origen.datos = qHash(datos, 0);
    plan.origen.catalogo = catalogo.huella;
    if (versionAjena >= 0) {
        plan.origen.conexion = contexto.conexion->Base().connectionName();
        plan.origen.versionAjena = versionAjena;
        plan.origen.cambiosPropios = cambiosPropios;
    }
    plan.cambios.reserve(qsizetype(lineas.size()) +
                         (modo == ModoImportacion::Sustituir ? guardados.size() : 0));
    for (const LineaLeida &leida : lineas) {
        if (!leida.motivo.isEmpty()) {
            plan.rechazadas.append({leida.numero, leida.motivo});
            continue;
        }
        for (qsizetype k = 0; k < leida.claves.size(); ++k) {
            const Clave &clave = leida.claves[k];
            Nombrada &nombrada = nombradas[size_t(leida.nombradas[k])];
            if (nombrada.hecha)
                continue; // the same row and price on another line: once
            nombrada.hecha = true;
            const auto g = guardados.constFind(clave);
            if (g == guardados.cend()) {
                ++plan.anadidos;
                plan.cambios.push_back(
                    {clave.first, clave.second, std::nullopt, leida.precio, QVariant()});
            } else if (g->precio && *g->precio == *leida.precio) {
                ++plan.iguales;
            } else {
                ++plan.cambiados;
                plan.cambios.push_back(
                    {clave.first, clave.second, g->precio, leida.precio, g->fila});
            }
        }
    }
    if (modo == ModoImportacion::Sustituir) {
        // Only what the operator sees goes: a deleted product's row shows nowhere (nor in an
        // export), so no file can name it.
        for (auto g = guardados.cbegin(); g != guardados.cend(); ++g) {
            if (indice.contains(g.key()) || catalogo.Borrado(g.key().first).value_or(true))
                continue;
            ++plan.quitados;
            plan.cambios.push_back(
                {g.key().first, g.key().second, g->precio, std::nullopt, g->fila});
        }
    }
    return plan;
}

bool PlanVigente(const ContextoMotor &contexto, qint32 lista, const QByteArray &datos,
                 ModoImportacion modo, const PlanImportacion &plan) {
    // A plan that refused the whole file, or one of another list, mode or file, never holds.
    if (!plan.error.isEmpty() || plan.origen.lista != lista || plan.origen.modo != modo ||
        plan.origen.datos != qHash(datos, 0))
        return false;
    // On the connection that made it, with no commit of another and no row changed by this
    // one since, the dry run read what the database holds now: nothing to read again.
    if (plan.origen.versionAjena >= 0 &&
        plan.origen.conexion == contexto.conexion->Base().connectionName() &&
        EstadoBase(*contexto.conexion) ==
            std::pair(plan.origen.versionAjena, plan.origen.cambiosPropios))
        return true;
    // On a server, its own fingerprint says the same without a row read.
    if (!plan.origen.servidor.isEmpty())
        return HuellaServidor(contexto, lista) == plan.origen.servidor;
    Catalogo catalogo;
    catalogo.Leer(*contexto.conexion, contexto.tallaColor);
    if (catalogo.huella != plan.origen.catalogo)
        return false;
    quint64 precios = 0;
    PreciosGuardados(contexto, lista, precios);
    return precios == plan.origen.precios;
}

QString ResumenImportacion(const PlanImportacion &plan) {
    return QStringLiteral("%1 añadidos, %2 cambiados, %3 quitados, %4 iguales")
        .arg(plan.anadidos)
        .arg(plan.cambiados)
        .arg(plan.quitados)
        .arg(plan.iguales);
}
