{ Finds the straight edges of a gray photograph: find_lines PICTURE.bmp }
program find_lines;
{$mode delphi}
uses Math;

const
  Nuv = 'nuvimgsdk_c';
type
  TSegment = record
    x1, y1, x2, y2: LongInt;
    a, b, c: Double;
  end;
  PSegment = ^TSegment;

function NuvRead8BitBmpFile2Img(name: PAnsiChar; width, height: PLongInt): PByte; cdecl; external Nuv;
function NuvImgChainLines_Initialize(width, height: LongInt; minStraightness, maxDeviation: Double;
  minLength, grdThreshold, maxLines: LongInt): Boolean; cdecl; external Nuv;
function NuvImgChainLines_DoGryImg(gray: PByte; width, height: LongInt; fitLines: Boolean): LongInt; cdecl; external Nuv;
function NuvImgChainLines_GetLines: PSegment; cdecl; external Nuv;
procedure nuv_free(p: Pointer); cdecl; external Nuv;

var
  gray: PByte;
  segment: PSegment;
  width, height, i: LongInt;
begin
  SetExceptionMask([exInvalidOp, exDenormalized, exZeroDivide, exOverflow, exUnderflow, exPrecision]);
  gray := NuvRead8BitBmpFile2Img(PAnsiChar(AnsiString(ParamStr(1))), @width, @height);
  if (gray = nil) or not NuvImgChainLines_Initialize(width, height, 0.9, 1.0, 25, 24, 3601) then Halt(1);
  i := NuvImgChainLines_DoGryImg(gray, width, height, True);
  segment := NuvImgChainLines_GetLines;
  for i := 1 to i do begin
    WriteLn(segment^.x1, ',', segment^.y1, ',', segment^.x2, ',', segment^.y2);
    Inc(segment);
  end;
  nuv_free(gray);
end.
