// Tells what a device says of itself: status_monitor LOG
program status_monitor;

{$ifdef FPC}{$mode delphi}{$endif}

uses
  SysUtils, VekParams, VekMessages;

var
  Log: TVekLog;
  Found: TVekLogMessage;
  Problem: TVekProblem;
  Status: TDeviceStatus;
  Words: string;
  I: Integer;

begin
  Log := TVekLog.Create(ParamStr(1));
  try
    for Found in Log do
    begin
      for Problem in Found.Problems do
        WriteLn('line ', Found.Line, ': ', Problem.Severity, ': ', Problem.ToString);
      if Found.Id <> TDeviceStatus.MessageId then
        Continue;
      Status := Found.Message as TDeviceStatus;
      Words := '';
      for I := 0 to Status.NumOfMessages - 1 do
        Words := Words + Copy(', ', 1, 2 * I) + string(Status.Msgs[I]);
      WriteLn(Copy(Found.Time, 1, 19), ' status ', Status.Status, ', severity ', Status.Severity, ': ', Words);
    end;
  finally
    Log.Free;
  end;
end.
