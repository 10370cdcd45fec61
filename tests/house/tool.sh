# What the transcripts of the tool share: samples and what becomes of them, an odd name, and a device
# that is full. $TOOL is the tool and $ROOT the tree.
[ -x "${TOOL-}" ] && [ -d "${ROOT-}" ] || exit 1
export LC_ALL=C.UTF-8 PATH=${TOOL%/*}:$PATH
unset QT_LOGGING_RULES QT_LOGGING_CONF
cp "$ROOT/samples"/{chart.emf,drawing.wmf} .
# One of its records is of no known type, so that its picture may lack something.
cp drawing.wmf lossy.wmf && printf '\167' | dd of=lossy.wmf bs=1 seek=72 conv=notrunc status=none
metafile2svg chart.emf >chart.svg && metafile2svg drawing.wmf >drawing.svg || exit 1
odd="it's a \"näme\" 图 %1 I.EMF"
printf 'This is a text and no picture.' >text.emf
mkdir folder
# Our own where that can be, as a fault could put a file in its place.
full=/dev/full
! mknod full c 1 7 2>/dev/null || ! (: >full) 2>/dev/null || full=full
