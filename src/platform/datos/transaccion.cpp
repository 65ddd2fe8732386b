#include "transaccion.h"

#include "avisocambios.h"

namespace ADODB {

Transaccion::Transaccion(Connection &enlace) : conexion(enlace) {
    if (conexion.EnTransaccion())
        return;
    conexion.BeginTrans();
    propia = true;
}

Transaccion::~Transaccion() {
    if (propia && !terminada) {
        try {
            conexion.RollbackTrans();
        } catch (...) {
            // The error that brought us here is the one the operator must see; a rollback
            // that fails too (a connection gone) leaves nothing written either.
        }
    }
}

void Transaccion::Commit() {
    if (!propia || terminada)
        return;
    terminada = true;
    try {
        AnunciarCambios(conexion); // the other terminals hear of it when it commits
        conexion.CommitTrans();
    } catch (...) {
        try {
            conexion.RollbackTrans();
        } catch (...) {
        }
        throw;
    }
}

} // namespace ADODB
