// Reads a message, changes it, and prints it.
program four_lines;

{$ifdef FPC}{$mode delphi}{$endif}

uses
  VekMessages;

var
  Message: TFocusValue;

begin
  Message := TFocusValue.Parse('@@4112    80 7 41 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!');
  try
    Message.FocusValue := Message.FocusValue + 0.25;
    WriteLn(Message.ToString);
  finally
    Message.Free;
  end;
end.
