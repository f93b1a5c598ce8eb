#!/bin/sh
# Sample cupboard: makes labels.pdf of labels.ps, byte for byte the same each time.
set -eu
cd "$(dirname "$0")"
gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=pdfwrite -dAutoRotatePages=/None \
   -dOmitInfoDate=true -dOmitID=true -dOmitXMP=true \
   -sOutputFile="${1:-labels.pdf}" labels.ps
