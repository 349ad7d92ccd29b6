; Lines of drawings by ISO 128 as hatch patterns, in millimetres at a pen of 1 mm, in drawings of every unit.
*ACAD_ISO02W100, dashes
0, 0,0, 0,5, 12,-3
*ACAD_ISO03W100, dashes and wide gaps
0, 0,0, 0,5, 12,-18
*ACAD_ISO04W100, long dash, dot
0, 0,0, 0,5, 24,-3,.5,-3
*ACAD_ISO05W100, long dash, two dots
0, 0,0, 0,5, 24,-3,.5,-3,.5,-3
*ACAD_ISO06W100, long dash, three dots
0, 0,0, 0,5, 24,-3,.5,-3,.5,-3,.5,-3
*ACAD_ISO07W100, dots
0, 0,0, 0,5, .5,-3
*ACAD_ISO08W100, long dash, short dash
0, 0,0, 0,5, 24,-3,6,-3
*ACAD_ISO09W100, long dash, two short dashes
0, 0,0, 0,5, 24,-3,6,-3,6,-3
*ACAD_ISO10W100, dash, dot
0, 0,0, 0,5, 12,-3,.5,-3
*ACAD_ISO11W100, two dashes, dot
0, 0,0, 0,5, 12,-3,12,-3,.5,-3
*ACAD_ISO12W100, dash, two dots
0, 0,0, 0,5, 12,-3,.5,-3,.5,-3
*ACAD_ISO13W100, two dashes, two dots
0, 0,0, 0,5, 12,-3,12,-3,.5,-3,.5,-3
*ACAD_ISO14W100, dash, three dots
0, 0,0, 0,5, 12,-3,.5,-3,.5,-3,.5,-3
*ACAD_ISO15W100, two dashes, three dots
0, 0,0, 0,5, 12,-3,12,-3,.5,-3,.5,-3,.5,-3
