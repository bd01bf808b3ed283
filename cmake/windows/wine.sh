#!/bin/sh
# Runs a Windows program under Wine with settings of its own, beneath the build directory that it was made in:
#     wine.sh BUILD_DIRECTORY PROGRAM ARGUMENTS...
# Its own prefix, quiet, and without the parts that Wine would like to install for .NET and HTML.
WINEPREFIX=$1/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' WINEARCH=win64
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES WINEARCH
shift
exec wine "$@"
