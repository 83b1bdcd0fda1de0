"""Checks that the manifest declares the names that the executable's code uses."""

from . import executable_constants as constants
from . import part_names, version_resource
from .part_names import MANIFEST
from .problem import Problem

_DECLARE = "Declare it there as the executable has it"


def _known(path, program):
    for text in (constants.APPLICATION, *constants.CLASSES, *constants.PARAMETER_GROUPS):
        if not program.has_text(text):
            yield Problem(path, f"it does not have the name {text} in it, by which its code goes", "Build it again")


def _classes(path, manifest):
    if manifest.entry_point != constants.APPLICATION:
        what = f"its EntryPoint is {manifest.entry_point}; the class of the executable's application object is"
        yield Problem(MANIFEST, f"{what} {constants.APPLICATION}", _DECLARE)
    for server, classes in manifest.servers():
        if part_names.folded(server) == part_names.folded(path):
            for name in sorted(set(classes) - set(constants.CLASSES)):
                yield Problem(MANIFEST, f"it declares the class {name}, which {path} does not make", _DECLARE)
        elif not server.lower().endswith(".dll"):
            what = f"its server {server} is neither a library nor the application's own executable"
            yield Problem(MANIFEST, what, "Name one of these")


def _desktop_component(manifest):
    if not manifest.has_desktop_component:
        yield Problem(MANIFEST, "it has no windows.fullTrustProcess, which the executable starts", _DECLARE)
        return
    for group in constants.PARAMETER_GROUPS:
        if group not in manifest.parameter_groups():
            yield Problem(MANIFEST, f"it has no ParameterGroup {group}, with which the executable starts it", _DECLARE)


def _app_service(path, program, manifest):
    built_for = version_resource.text(program, constants.APP_SERVICE)
    if not manifest.has_app_service:
        yield Problem(MANIFEST, f"it has no windows.appService; {path} serves {built_for}", _DECLARE)
    elif manifest.app_service != built_for:
        what = f"its app service is {manifest.app_service}; {path} was built for {built_for}"
        yield Problem(MANIFEST, what, _DECLARE)


def problems(path, program, manifest):
    yield from _known(path, program)
    yield from _classes(path, manifest)
    yield from _desktop_component(manifest)
    yield from _app_service(path, program, manifest)
