#pragma once

#include "platform/ui/mensajes.h"

#include <QQueue>
#include <QStringList>

/// While one of these lives, the program's boxes are not shown: each is recorded and a question
/// is answered from the queue (Yes when it runs dry). Several may live at once (a helper's
/// inside a test's): they share one record, begun by the first.
class RespuestasMensajes {
  public:
    RespuestasMensajes() {
        Registro &r = registro();
        if (r.activas++ == 0) {
            r.mostrados.clear();
            r.titulos.clear();
            r.respuestas.clear();
            ContestadorMensajes() = &r;
        }
    }
    ~RespuestasMensajes() {
        if (--registro().activas == 0)
            ContestadorMensajes() = nullptr;
    }
    RespuestasMensajes(const RespuestasMensajes &) = delete;
    RespuestasMensajes &operator=(const RespuestasMensajes &) = delete;

    void Responder(bool si) { registro().respuestas.enqueue(si); }
    QStringList Mostrados() const { return registro().mostrados; }
    /// The title of each box recorded, in the same order: empty for the program's own title.
    QStringList Titulos() const { return registro().titulos; }

  private:
    struct Registro : Contestador {
        int activas = 0;
        QStringList mostrados;
        QStringList titulos;
        QQueue<bool> respuestas;
        bool Contestar(const QString &texto, const QString &titulo) override {
            mostrados.append(texto);
            titulos.append(titulo);
            return respuestas.isEmpty() ? true : respuestas.dequeue();
        }
    };
    static Registro &registro() {
        static Registro r;
        return r;
    }
};
