/// A test of the sandbox that can be run on any machine.
#pragma once

namespace phone::pictures {

/// Enters the sandbox, tries what it must refuse and prints a line for each.
/// @return an exit status: 0 when everything was refused
int check_sandbox();

}  // namespace phone::pictures
