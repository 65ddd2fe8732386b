#pragma once

#include "redondeo.h"

#include <QSet>
#include <QString>

#include <string>
#include <unordered_map>

namespace ADODB {
class Connection;
}

/// The rule of a bulk change as an SQL function of SQLite, `motor_nuevo(precio)`, while the
/// object lives: the new price of a stored price, as text, or null when the price stays (the
/// same after the change, none, or refused). Each distinct stored value is worked out once,
/// from its text, by the exact arithmetic. The refused ones are kept, by their text.
class FuncionPrecio {
  public:
    FuncionPrecio(ADODB::Connection &conexion, const ReglaCambio &regla);
    ~FuncionPrecio();
    FuncionPrecio(const FuncionPrecio &) = delete;
    FuncionPrecio &operator=(const FuncionPrecio &) = delete;

    /// The texts of the stored prices the rule refused, and whether a row had none.
    const QSet<QString> &Rechazados() const { return rechazados; }
    bool HayNulos() const { return nulos; }

  private:
    static void Llamada(void *contexto, int argumentos, void **valores);
    const std::string *nuevo(void *valor);

    void *db = nullptr;
    ReglaCambio regla;
    /// By the stored value (a whole number, or a binary one, as SQLite keeps it): the new
    /// price's text, empty when it stays.
    std::unordered_map<double, std::string> porValor;
    std::unordered_map<std::string, std::string> porTexto;
    QSet<QString> rechazados;
    bool nulos = false;
};
