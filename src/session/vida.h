#pragma once

#include "suite/datos/svcconexion.h"
#include "suite/datos/svcopciones.h"
#include "suite/ui/svcaspecto.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcteclado.h"
#include "suite/ui/svctraduccion.h"

#include <QObject>
#include <memory>
#include <typeindex>
#include <vector>

namespace Principal {

/// What lives as long as the program: one object of each long-lived service and the one
/// instance of each screen (made at its first use), and the session record's connection.
///
/// Main makes one on its stack, after the application object; a test makes one for each shop
/// it sets up. Its end destroys the screens, the last made first, then puts the session record
/// back, which closes the suite's connection: all while the application object and Qt's SQL
/// registry still exist, so nothing of Qt is touched after Qt is gone. One lives at a time.
class Vida {
  public:
    Vida();
    ~Vida();
    Vida(const Vida &) = delete;
    Vida &operator=(const Vida &) = delete;

    /// The one that lives, or nullptr.
    static Vida *Actual();

    /// The program's one screen of class T, made at its first use. Raises std::logic_error
    /// when no Vida lives: a screen needs an owner that ends before the application does.
    template <class T> static T &Pantalla() {
        Vida &v = Requerida();
        for (const auto &[tipo, objeto] : v.pantallas)
            if (tipo == std::type_index(typeid(T)))
                return static_cast<T &>(*objeto);
        auto nueva = std::make_unique<T>();
        T &referencia = *nueva;
        v.pantallas.emplace_back(std::type_index(typeid(T)), std::move(nueva));
        return referencia;
    }

    SvcConexion conexion;
    SvcOpciones opciones;
    SvcAspecto aspecto;
    SvcEscala escala;
    SvcTeclado teclado;
    SvcTraduccion traduccion;

  private:
    static Vida &Requerida();
    std::vector<std::pair<std::type_index, std::unique_ptr<QObject>>> pantallas;
};

} // namespace Principal
