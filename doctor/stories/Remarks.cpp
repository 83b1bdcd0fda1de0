// What is worth a remark though no story of its own tells it.

#include "doctor/stories/Remark.h"

namespace doctor
{

namespace
{

constexpr std::string_view twiceCause =
    "Two registrations overlapped, from two helpers or from one that did not wait: each removed the old tasks before the "
    "other one registered its own.";

constexpr std::string_view twiceAdvice = "Let one helper register again: that removes all of the app's tasks first.";

} // namespace

Remark const pushTaskTwice = {
    {"The push task is registered twice: each push wakes the suite twice.", twiceCause, twiceAdvice},
    Stage::TasksRegistered,
    true};

Remark const timerTaskTwice = {
    {"The daily timer's task is registered twice: it wakes the suite twice a day.", twiceCause, twiceAdvice},
    Stage::TasksRegistered,
    true};

Remark const pushTaskWasTwice = {
    {"The push task was registered twice for a time; later both were removed.", twiceCause, ""}, {}};

Remark const timerTaskWasTwice = {
    {"The daily timer's task was registered twice for a time; later both were removed.", twiceCause, ""}, {}};

Remark const noTimer = {
    {"More than a day passed without the daily timer.",
     "The machine was off or asleep, battery saver or a setting holds back the app's background tasks, or the "
     "registration was lost.",
     "Look in Settings, Privacy, Background apps, and at battery saver; then let the helper register again."},
    Stage::Woken};

Remark const noLine = {
    {"Not even the daily timer has woken the app since the log's last line, for more than a day.",
     "The log was taken earlier (--as-of says when), the machine was off or asleep, or the registration was lost.",
     noTimer.meaning.advice},
    {}};

Remark const noPush = {
    {"No push has arrived since the channel's URI changed.",
     "The push server still uses the earlier URI, or nothing was to be sent.",
     "Ask the server's side which URI it uses, and what the push service answers there (404 and 410: expired)."},
    {}};

Remark const closedInRequest = {
    {"A connection was closed in the middle of a request.",
     "The helper ended or gave up before the app replied, or the platform cancelled the service's task.",
     "See whether the helper waits long enough (a registration takes up to 60 s), and whether it crashed."},
    Stage::Service};

Remark const secondConnection = {
    {"A helper connected while another one was connected.",
     "Two helpers run at the same time. The app knows one connection, the newest: it gets all replies, and when either "
     "helper leaves, it is closed.",
     "Let one helper at a time connect."},
    {}};

Remark const clockSetBack = {{"The clock was set back: times before and after cannot be compared.",
                              "The end of daylight saving time, a change of the time zone, or a correction by hand.",
                              ""},
                             {}};

Remark const withheld = {
    {"Lines were withheld because they held a token.", "A message had what looks like a signed web token in it.", ""},
    {}};

Remark const setAside = {{"A log of another encoding was set aside, and a new one begun.",
                          "Another program, or an editor, had written the file.",
                          "Leave the log to the app: copy it before you edit it."},
                         {}};

Remark const rotated = {{"The log was rotated: it had come to its limit of size.", "", ""}, {}};

Remark const copyMissing = {
    {"A copy of the log is missing here.",
     "Its file was not sent along, or the app has deleted it: it keeps the copies of some days.",
     "Ask for all files that begin with KZEB."},
    {}};

Remark const beginningMissing = {{"The log begins in the middle: what was before is not here.",
                                  copyMissing.meaning.cause, copyMissing.meaning.advice},
                                 {}};

} // namespace doctor
