// Real numbers as the library reads and writes them, exactly, whatever the run-time library makes of long ones.
unit VekNumbers;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}
{$Q-}{$R-}

interface

/// <summary>With six decimals, exactly rounded, ties to even. It has to be finite.</summary>
function VekSixDecimals(Value: Double): UnicodeString;

/// <summary>The nearest value of a decimal number with at most nine decimals.</summary>
function VekRealOf(const Text: UnicodeString): Double;

implementation

uses
  SysUtils;

type
  TWords = TArray<Cardinal>; // of a large number, the lowest first

const
  Million = 1000000;
  Billion = 1000000000;

procedure MultiplyAdd(var Words: TWords; Factor, Summand: Cardinal);
var
  I: Integer;
  Carry: UInt64;
begin
  Carry := Summand;
  for I := 0 to High(Words) do
  begin
    Carry := Carry + UInt64(Words[I]) * Factor;
    Words[I] := Cardinal(Carry);
    Carry := Carry shr 32;
  end;
  if Carry > 0 then
  begin
    SetLength(Words, Length(Words) + 1);
    Words[High(Words)] := Cardinal(Carry);
  end;
end;

// Returns the remainder.
function Divide(var Words: TWords; Divisor: Cardinal): Cardinal;
var
  I: Integer;
  Rest: UInt64;
begin
  Rest := 0;
  for I := High(Words) downto 0 do
  begin
    Rest := Rest shl 32 or Words[I];
    Words[I] := Cardinal(Rest div Divisor);
    Rest := Rest mod Divisor;
  end;
  while (Length(Words) > 0) and (Words[High(Words)] = 0) do
    SetLength(Words, Length(Words) - 1);
  Result := Cardinal(Rest);
end;

function Padded(Value: UInt64; Size: Integer): UnicodeString;
begin
  Result := UnicodeString(IntToStr(Int64(Value)));
  while Length(Result) < Size do
    Result := '0' + Result;
end;

// Mantissa * 2^Exponent, a whole number.
function LargeDigits(Mantissa: UInt64; Exponent: Integer): UnicodeString;
var
  Words: TWords;
  Step: Integer;
begin
  SetLength(Words, 2);
  Words[0] := Cardinal(Mantissa);
  Words[1] := Cardinal(Mantissa shr 32);
  while Exponent > 0 do
  begin
    Step := Exponent;
    if Step > 30 then
      Step := 30;
    MultiplyAdd(Words, Cardinal(1) shl Step, 0);
    Dec(Exponent, Step);
  end;
  Result := '';
  while Length(Words) > 0 do
    Result := Padded(Divide(Words, Billion), 9) + Result;
  while (Length(Result) > 1) and (Result[1] = '0') do
    Delete(Result, 1, 1);
end;

// Fraction / 2^Bits in millionths; the fraction is below 2^53 and below 2^Bits.
function Millionths(Fraction: UInt64; Bits: Integer): UInt64;
var
  Low, High, Rest, Half: UInt64;
  IsAbove, IsTie: Boolean;
begin
  if Bits > 74 then
    Exit(0); // less than half of one
  Low := (Fraction and $FFFFFFFF) * Million;
  High := (Fraction shr 32) * Million + Low shr 32;
  Low := Low and $FFFFFFFF;
  if Bits <= 32 then
  begin
    Result := High shl (32 - Bits) or Low shr Bits;
    Rest := Low and (UInt64(1) shl Bits - 1);
    Half := UInt64(1) shl Bits shr 1;
    IsAbove := Rest > Half;
    IsTie := (Rest = Half) and (Bits > 0);
  end
  else
  begin
    Result := High shr (Bits - 32);
    Rest := High and (UInt64(1) shl (Bits - 32) - 1);
    Half := UInt64(1) shl (Bits - 33);
    IsAbove := (Rest > Half) or (Rest = Half) and (Low > 0);
    IsTie := (Rest = Half) and (Low = 0);
  end;
  if IsAbove or IsTie and Odd(Result) then
    Inc(Result);
end;

function VekSixDecimals(Value: Double): UnicodeString;
var
  Bits, Mantissa, Whole, Parts: UInt64;
  Exponent: Integer;
begin
  Bits := PUInt64(@Value)^;
  Exponent := Integer(Bits shr 52 and $7FF);
  Mantissa := Bits and (UInt64(1) shl 52 - 1);
  if Exponent > 0 then
    Mantissa := Mantissa or UInt64(1) shl 52
  else
    Exponent := 1;
  Exponent := Exponent - 1075;
  if Exponent >= 0 then
    Result := LargeDigits(Mantissa, Exponent) + '.000000'
  else
  begin
    Whole := 0;
    if Exponent > -53 then
    begin
      Whole := Mantissa shr -Exponent;
      Mantissa := Mantissa and (UInt64(1) shl -Exponent - 1);
    end;
    Parts := Millionths(Mantissa, -Exponent);
    Result := Padded(Whole + Parts div Million, 1) + '.' + Padded(Parts mod Million, 6);
  end;
  if Bits shr 63 = 1 then
    Result := '-' + Result;
end;

// The words are 96 bits left of their places, and something may lie behind them.
function Rounded(const Words: TWords; HasMore: Boolean): UInt64;
var
  Top, Exponent, Shift, I: Integer;
  Bits: UInt64;
begin
  Top := High(Words);
  Shift := 0;
  while Words[Top] shl Shift and $80000000 = 0 do
    Inc(Shift);
  Bits := (UInt64(Words[Top]) shl 32 or Words[Top - 1]) shl Shift or UInt64(Words[Top - 2]) shl Shift shr 32;
  HasMore := HasMore or (Cardinal(Words[Top - 2] shl Shift) <> 0);
  for I := 0 to Top - 3 do
    HasMore := HasMore or (Words[I] <> 0);
  Exponent := 32 * (Top - 1) - Shift - 96 + 11;
  Result := Bits shr 11;
  Bits := Bits and $7FF;
  if (Bits > $400) or (Bits = $400) and (HasMore or Odd(Result)) then
    Inc(Result);
  if Result shr 53 = 1 then
  begin
    Result := Result shr 1;
    Inc(Exponent);
  end;
  if Exponent + 1075 >= $7FF then
    Exit(UInt64($7FF) shl 52);
  Result := Result and (UInt64(1) shl 52 - 1) or UInt64(Exponent + 1075) shl 52;
end;

function VekRealOf(const Text: UnicodeString): Double;
var
  Words: TWords;
  Place: WideChar;
  Divisor, Bits: UInt64;
  IsFraction, HasMore: Boolean;
begin
  Words := nil;
  Divisor := 1;
  IsFraction := False;
  for Place in Text do
    if Place = '.' then
      IsFraction := True
    else if (Place >= '0') and (Place <= '9') then
    begin
      MultiplyAdd(Words, 10, Ord(Place) - Ord('0'));
      if IsFraction then
        Divisor := Divisor * 10;
    end;
  Bits := 0;
  if Length(Words) > 0 then
  begin
    Words := Concat(TWords.Create(0, 0, 0), Words);
    HasMore := Divide(Words, Cardinal(Divisor)) > 0;
    Bits := Rounded(Words, HasMore);
  end;
  if (Text <> '') and (Text[1] = '-') then
    Bits := Bits or UInt64(1) shl 63;
  Result := PDouble(@Bits)^;
end;

end.
