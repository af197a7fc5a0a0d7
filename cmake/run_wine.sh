#!/bin/sh
# Runs a program under Wine: run_wine.sh PROGRAM [ARGUMENT...]
#
# Windows refuses a request for terabytes of memory at once. Wine first reserves the addresses, and keeps tables of half
# a gigabyte for them even after it has refused. A limit of 16 GB of addresses makes it refuse at once, too.
ulimit -v 16777216
exec wine "$@"
