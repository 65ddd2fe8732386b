#include "funcionprecio.h"

#include "aritmetica.h"

#include "platform/datos/conexion.h"
#include "platform/datos/errorbd.h"

#include <QSqlDriver>
#include <sqlite3.h>

namespace {

constexpr const char *Nombre = "motor_nuevo";

} // namespace

FuncionPrecio::FuncionPrecio(ADODB::Connection &conexion, const ReglaCambio &reglaCambio)
    : regla(reglaCambio) {
    const QVariant manejador = conexion.Base().driver()->handle();
    sqlite3 *base =
        manejador.isValid() ? *static_cast<sqlite3 *const *>(manejador.constData()) : nullptr;
    if (!base || sqlite3_create_function_v2(
                     base, Nombre, 1, SQLITE_UTF8, this,
                     [](sqlite3_context *c, int n, sqlite3_value **v) {
                         Llamada(c, n, reinterpret_cast<void **>(v));
                     },
                     nullptr, nullptr, nullptr) != SQLITE_OK)
        throw ADODB::ErrorBD(QStringLiteral("La base de datos no ha aceptado la regla del cambio "
                                            "de precios. No se ha grabado nada."));
    db = base;
}

FuncionPrecio::~FuncionPrecio() {
    sqlite3_create_function_v2(static_cast<sqlite3 *>(db), Nombre, 1, SQLITE_UTF8, nullptr, nullptr,
                               nullptr, nullptr, nullptr);
}

const std::string *FuncionPrecio::nuevo(void *dato) {
    sqlite3_value *valor = static_cast<sqlite3_value *>(dato);
    const int tipo = sqlite3_value_numeric_type(valor);
    if (tipo == SQLITE_NULL) {
        nulos = true;
        return nullptr;
    }
    // Whole numbers and binary ones compare by value, as the column's own "=" does; a whole
    // number too big for a binary one, or text, goes by its text.
    constexpr sqlite3_int64 Exacto = sqlite3_int64(1) << 53;
    const bool porNumero =
        tipo == SQLITE_FLOAT || (tipo == SQLITE_INTEGER && sqlite3_value_int64(valor) < Exacto &&
                                 sqlite3_value_int64(valor) > -Exacto);
    const double clave = porNumero ? sqlite3_value_double(valor) : 0;
    if (porNumero) {
        const auto i = porValor.find(clave);
        if (i != porValor.end())
            return i->second.empty() ? nullptr : &i->second;
    }
    // The stored value's text, as "cast(precio as text)" gives it, read by the exact arithmetic.
    const std::string bytes(reinterpret_cast<const char *>(sqlite3_value_text(valor)),
                            size_t(sqlite3_value_bytes(valor)));
    if (!porNumero) {
        const auto i = porTexto.find(bytes);
        if (i != porTexto.end())
            return i->second.empty() ? nullptr : &i->second;
    }
    const QString texto = QString::fromStdString(bytes);
    const std::optional<Importe> viejo = Aritmetica::LeerGuardado(texto);
    const std::optional<Importe> precio = viejo ? NuevoPrecio(*viejo, regla) : std::nullopt;
    if (!precio)
        rechazados.insert(texto);
    std::string resultado =
        !precio || *precio == *viejo ? std::string() : precio->TextoSQL().toStdString();
    // The entries stay where they are while the object lives: SQLite reads the text there.
    const std::string &guardado = porNumero
                                      ? porValor.emplace(clave, std::move(resultado)).first->second
                                      : porTexto.emplace(bytes, std::move(resultado)).first->second;
    return guardado.empty() ? nullptr : &guardado;
}

void FuncionPrecio::Llamada(void *contexto, int, void **valores) {
    sqlite3_context *c = static_cast<sqlite3_context *>(contexto);
    auto *yo = static_cast<FuncionPrecio *>(sqlite3_user_data(c));
    try {
        const std::string *texto = yo->nuevo(valores[0]);
        if (texto)
            sqlite3_result_text(c, texto->data(), int(texto->size()), nullptr);
        else
            sqlite3_result_null(c);
    } catch (...) {
        sqlite3_result_error(c, "motor_nuevo", -1);
    }
}
