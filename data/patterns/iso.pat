; Patterns in millimetres, in drawings of every unit: lines by ISO 128 at a pen of 1 mm, materials by GOST and JIS.
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
*GOST_GLASS, glass: groups of three short strokes
45, 0,0, 6,12, 5,-7
45, 0,2, 6,12, 3,-9
45, 0,-2, 6,12, 3,-9
*GOST_GROUND, ground: groups of three strokes, nothing between
45, 0,0, 10,10, 20,-5
45, 3,0, 10,10, 20,-5
45, 6,0, 10,10, 20,-5
*GOST_WOOD, wood: grain along the fibre
90, 0,0, 0,6, 10,-2
90, 2,-2, 0,6, 6,-1.5,10,-2
90, 4,-5, 0,6, 8,-1.5,6,-2
*JIS_LC_8, lines 8 apart
45, 0,0, 0,8
*JIS_LC_8A, pairs of lines 8 apart
45, 0,0, 0,8
45, .75,0, 0,8
*JIS_LC_20, lines 20 apart
45, 0,0, 0,20
*JIS_LC_20A, pairs of lines 20 apart
45, 0,0, 0,20
45, 1.5,0, 0,20
*JIS_RC_10, reinforced concrete: three lines 10 apart
45, 0,0, 0,10
45, 1,0, 0,10
45, 2,0, 0,10
*JIS_RC_15, reinforced concrete: three lines 15 apart
45, 0,0, 0,15
45, 1,0, 0,15
45, 2,0, 0,15
*JIS_RC_18, reinforced concrete: three lines 18 apart
45, 0,0, 0,18
45, 1.5,0, 0,18
45, 3,0, 0,18
*JIS_RC_30, reinforced concrete: three lines 30 apart
45, 0,0, 0,30
45, 2,0, 0,30
45, 4,0, 0,30
*JIS_STN_1E, stone, close
45, 0,0, 0,1
45, .7071067812,0, 0,1, 1.2,-.6
*JIS_STN_2.5, stone
45, 0,0, 0,2.5
45, 1.767766953,0, 0,2.5, 1.2,-.6
*JIS_WOOD, wood, cut across
45, 0,0, 0,.7
