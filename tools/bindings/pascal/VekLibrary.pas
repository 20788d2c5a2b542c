// The library beside the program, and its calls.
unit VekLibrary;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}

interface

uses
  SysUtils;

type
  /// <summary>The library is not there.</summary>
  EVekLibrary = class(Exception);
  /// <summary>What it says of values that no message can carry.</summary>
  EVekRefused = class(Exception);

/// <summary>The JSON of a message.</summary>
function VekLibraryRead(const Text: TBytes): TBytes;
/// <summary>The message of such JSON.</summary>
function VekLibraryWrite(const Json: TBytes): TBytes;
function VekLibraryOpenLog: Pointer;
/// <summary>What a block brings, a line of JSON for each message; an empty block is the end.</summary>
function VekLibraryTakeLog(Log: Pointer; const Block: TBytes): TBytes;
procedure VekLibraryCloseLog(Log: Pointer);

implementation

{$ifdef FPC}
uses
  dynlibs;
{$else}
uses
  Windows;

type
  TLibHandle = HMODULE;
{$endif}

type
  TCall = function(Text: PByte; Size: NativeUInt; Buffer: PByte; Room: NativeUInt): Int32; cdecl;

var
  Handle: TLibHandle;
  Read, Write: TCall;
  OpenLog: function: Pointer; cdecl;
  TakeLog: function(Log: Pointer; Block: PByte; Size: NativeUInt): Int32; cdecl;
  Found: function(Log: Pointer): PByte; cdecl;
  CloseLog: procedure(Log: Pointer); cdecl;

function Call(const Name: string): Pointer;
begin
  Result := GetProcAddress(Handle, PChar(Name));
  if Result = nil then
    raise EVekLibrary.CreateFmt('the library vekBindings is not of this package: it has no %s', [Name]);
end;

// At the first call: a program that can do without the library starts without it.
procedure Load;
const
  Name = {$ifdef MSWINDOWS} 'vekBindings.dll' {$else} 'libvekBindings.so' {$endif};
var
  Beside: string;
begin
  Beside := ExtractFilePath(ExpandFileName(ParamStr(0))) + Name;
  if not FileExists(Beside) then
    raise EVekLibrary.CreateFmt('%s is not there: put the one for this machine beside the program, out of the folder ' +
      'runtimes of the package', [Beside]);
  Handle := LoadLibrary(PChar(Beside));
  if Handle = 0 then
    raise EVekLibrary.CreateFmt('%s is for another machine than this program', [Beside]);
  Read := Call('vekBindingsRead');
  OpenLog := Call('vekBindingsOpenLog');
  TakeLog := Call('vekBindingsTakeLog');
  Found := Call('vekBindingsFound');
  CloseLog := Call('vekBindingsCloseLog');
  Write := Call('vekBindingsWrite');
end;

// Threads may be at it at once: all find the same, and the last one found is what is asked for.
procedure Need;
begin
  if not Assigned(Write) then
    Load;
end;

function Made(Make: TCall; const Text: TBytes; out IsGood: Boolean): TBytes;
const
  FirstRoom = 1 shl 14;
var
  Size: Int32;
  Room: NativeUInt;
begin
  Room := FirstRoom;
  repeat
    SetLength(Result, Room);
    Size := Make(PByte(Text), Length(Text), PByte(Result), Room);
    if Size < Int32(Room) then
      Break;
    Room := NativeUInt(Size) + 1;
  until False;
  IsGood := Size >= 0;
  if not IsGood then
    Size := StrLen(PAnsiChar(Result));
  SetLength(Result, Size);
end;

function VekLibraryRead(const Text: TBytes): TBytes;
var
  IsGood: Boolean;
begin
  Need;
  Result := Made(Read, Text, IsGood);
  if not IsGood then
    OutOfMemoryError;
end;

function VekLibraryWrite(const Json: TBytes): TBytes;
var
  IsGood: Boolean;
  Words: UTF8String;
begin
  Need;
  Result := Made(Write, Json, IsGood);
  if IsGood then
    Exit;
  SetString(Words, PAnsiChar(Result), Length(Result));
  raise EVekRefused.Create(string(Words));
end;

function VekLibraryOpenLog: Pointer;
begin
  Need;
  Result := OpenLog();
  if Result = nil then
    OutOfMemoryError;
end;

function VekLibraryTakeLog(Log: Pointer; const Block: TBytes): TBytes;
var
  Size: Int32;
begin
  Size := TakeLog(Log, PByte(Block), Length(Block));
  if Size < 0 then
    OutOfMemoryError;
  SetLength(Result, Size);
  if Size > 0 then
    Move(Found(Log)^, Result[0], Size);
end;

procedure VekLibraryCloseLog(Log: Pointer);
begin
  CloseLog(Log);
end;

end.
