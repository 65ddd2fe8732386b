#pragma once

/// The program's entry: refuses a second copy, opens the suite's database, loads the session
/// and shows the register until it is closed. Gives the process's exit status.
namespace Principal {
int Main();
}
