#pragma once

#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"

#include <QString>

/// frmTarifas, the price list editor, opened modally by the register on one list.
class FrmTarifas : public Form {
    Q_OBJECT
public:
    FrmTarifas();

    // The controls the screen's code works with, bound at each load.
    Label *lblCodigo = nullptr, *lblDesde = nullptr, *lblHasta = nullptr, *Label5 = nullptr;
    DTPicker *desde = nullptr, *hasta = nullptr;
    CommandButton *cmdSalir = nullptr, *Command1 = nullptr;

protected:
    void Form_Load() override;

private:
    void enlazarControles();
    void cmdSalir_Click();
    void Command1_Click();
};

/// The program's one editor screen, made at its first use.
FrmTarifas &frmTarifas();
