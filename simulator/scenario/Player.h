#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

// Plays a scenario file on a fresh device: what the device held goes first. Shows what happens as it happens and says
// at the end what was checked. False when anything was other than the scenario says; then it says what. Throws Error
// when the scenario cannot be played.
//
// A step per line; # begins a comment; words with blanks in quotes. {home}, {layout} and {family} stand for the
// device's folder, the package's folder and its family name, {uri} and {logged-uri} for the open push channel's URI, as
// it is and with each % doubled.
//   register [without FILE]      the package of VELMO_SIM_PACKAGE, or a copy of it that lacks a file
//   launch [ARGUMENTS] · protocol URI · suspend · kill · fault … · push [PAYLOAD] · clock +TIME · revoke-channel ·
//   cancel-tasks REASON          as on the command line
//   helper [@NAME] ARGUMENTS…    starts helper.exe; several at a time have names
//   kill helper [@NAME]          ends it from outside
//   grow-log BYTES               makes the app's log so long, as long use would
//   expect event KIND [NAME=VALUE…]        the next event, of the platform or (desktop-…) of the desktop component,
//   with
//                                          these details among its own
//   expect log MESSAGE [level=…] [category=…]      the next line of the log; its level is INFO if none is given
//   expect interleaved log [level=…] [category=…] MESSAGE… | MESSAGE…      the next lines of the log, of several
//                                          threads: each one's in their order; an option holds for the messages after
//                                          it
//   expect helper [@NAME] LINE             the next line that the helper printed
//   expect helper-exit [@NAME] CODE        it has ended, having printed nothing more
//   expect desktop GROUP COMMANDLINE       the desktop component was started for the group, saw this command line and
//                                          the user's temporary folder, and ended well
//   expect exit CODE [after A..B ms]       the app's process, the next event, ended as it announced; counted from its
//                                          start
//   expect crash [CODE] [after A..B ms]    it ended in another way; without CODE: with any but 0
//   expect terminated [after A..B ms]      the platform ended it
// Events of the platform, events of the desktop component, the lines of each helper and log lines are each expected in
// their order, and none may come that is not expected.
bool PlayScenario(std::wstring const& path, Device const& device, Colour colour);

} // namespace sim
