#include "frmtarifas.h"

#include "screens/disenotarifas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svctraduccion.h"

FrmTarifas::FrmTarifas() : Form(DisenoTarifas()) {}

FrmTarifas &frmTarifas() {
    static FrmTarifas pantalla;
    return pantalla;
}

void FrmTarifas::enlazarControles() {
    lblCodigo = control<Label>(QStringLiteral("lblCodigo"));
    lblDesde = control<Label>(QStringLiteral("lblDesde"));
    lblHasta = control<Label>(QStringLiteral("lblHasta"));
    Label5 = control<Label>(QStringLiteral("Label5"));
    desde = control<DTPicker>(QStringLiteral("desde"));
    hasta = control<DTPicker>(QStringLiteral("hasta"));
    cmdSalir = control<CommandButton>(QStringLiteral("cmdSalir"));
    Command1 = control<CommandButton>(QStringLiteral("Command1"));
    connect(cmdSalir, &CommandButton::Click, this, &FrmTarifas::cmdSalir_Click);
    connect(Command1, &CommandButton::Click, this, &FrmTarifas::Command1_Click);
}

void FrmTarifas::Form_Load() {
    enlazarControles();
    Principal::svcTraduccion().TraducirFormulario(*SesionSuite.Conexion, *this);
}

void FrmTarifas::cmdSalir_Click() { Unload(); }

void FrmTarifas::Command1_Click() {
    Principal::svcTraduccion().GenerarCaptions(*SesionSuite.Conexion, *this);
}
