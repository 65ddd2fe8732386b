#pragma once

#include "platform/datos/conexion.h"
#include "platform/ui/mensajes.h"

#include <QQueue>
#include <QStringList>

/// What a box recorded inside a unit of work starts with, so that no comparison of the texts
/// passes.
inline const QString MarcaDentroDeUnidad = QStringLiteral("[dentro de una unidad de trabajo] ");

/// While one of these lives, the program's boxes are not shown: each is recorded and a question
/// is answered from the queue (Yes when it runs dry). Several may live at once (a helper's
/// inside a test's): they share one record, begun by the first. A box (or an error report)
/// asked for while a unit of work is open keeps the unit's locks (on SQLite, the whole file)
/// from every other terminal for as long as the operator takes: it is a fault of the program,
/// recorded with MarcaDentroDeUnidad before its text, and counted. A file dialog is answered
/// the same way, from its own queue (cancelled when it runs dry), and recorded as its title
/// and the path it proposes, in Ficheros(); one inside a unit of work is counted as a box is.
class RespuestasMensajes {
  public:
    RespuestasMensajes() {
        Registro &r = registro();
        if (r.activas++ == 0) {
            r.mostrados.clear();
            r.titulos.clear();
            r.respuestas.clear();
            r.ficheros.clear();
            r.pedidos.clear();
            r.enUnidad = 0;
            Pantalla::ContestadorMensajes() = &r;
        }
    }
    ~RespuestasMensajes() {
        if (--registro().activas == 0)
            Pantalla::ContestadorMensajes() = nullptr;
    }
    RespuestasMensajes(const RespuestasMensajes &) = delete;
    RespuestasMensajes &operator=(const RespuestasMensajes &) = delete;

    void Responder(bool si) { registro().respuestas.enqueue(si); }
    /// The path the next file dialog gets (empty: the operator cancels it).
    void ResponderFichero(const QString &ruta) { registro().ficheros.enqueue(ruta); }
    /// Each file dialog asked for, as "title: proposed path", in order.
    QStringList Ficheros() const { return registro().pedidos; }
    QStringList Mostrados() const { return registro().mostrados; }
    /// The title of each box recorded, in the same order: empty for the program's own title.
    QStringList Titulos() const { return registro().titulos; }
    /// How many of the boxes recorded were asked for inside a unit of work.
    int DentroDeUnidad() const { return registro().enUnidad; }

  private:
    struct Registro : Pantalla::Contestador {
        int activas = 0;
        QStringList mostrados;
        QStringList titulos;
        QQueue<bool> respuestas;
        QQueue<QString> ficheros;
        QStringList pedidos;
        int enUnidad = 0;
        bool Contestar(const QString &texto, const QString &titulo) override {
            const bool dentro = ADODB::Connection::HayUnidadAbierta();
            enUnidad += dentro ? 1 : 0;
            mostrados.append(dentro ? MarcaDentroDeUnidad + texto : texto);
            titulos.append(titulo);
            return respuestas.isEmpty() ? true : respuestas.dequeue();
        }
        QString ContestarFichero(const QString &titulo, const QString &propuesto) override {
            const bool dentro = ADODB::Connection::HayUnidadAbierta();
            enUnidad += dentro ? 1 : 0;
            pedidos.append((dentro ? MarcaDentroDeUnidad : QString()) + titulo +
                           QStringLiteral(": ") + propuesto);
            return ficheros.isEmpty() ? QString() : ficheros.dequeue();
        }
    };
    static Registro &registro() {
        static Registro r;
        return r;
    }
};
