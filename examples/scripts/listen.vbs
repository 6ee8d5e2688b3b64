' Script listeners on a record list and its records (VBScript).
'
'   regsvr32 BrevoRecordList.dll
'   cscript //nologo listen.vbs
'
' A listener is any object with the notification methods it wants to hear
' (RecordBeforeAdd, ValueAfterChange, ...): the library calls them by name
' and skips the ones it leaves out. A "Before" notification may refuse the
' change by calling Stop on its event; the change then fails with the
' library's message.
Option Explicit

Const TEXT_TYPE = 8, INTEGER_TYPE = 10  ' column-type codes

' Rows being added; the list takes at most three.
Class RowWatcher
  Public Sub RecordBeforeAdd(e)
    ' A record list's Size is unsigned (VT_UI4): CLng makes it a VBScript number.
    Dim size
    size = CLng(e.GetSource().Size)
    WScript.Echo "RecordBeforeAdd: the list has " & size & " rows"
    If size >= 3 Then e.Stop
  End Sub
  Public Sub RecordAfterAdd(e)
    ' A summary, sent when events are switched back on, carries no record.
    If e.GetRecordChanged() Is Nothing Then
      WScript.Echo "RecordAfterAdd, a summary"
    Else
      WScript.Echo "RecordAfterAdd"
    End If
  End Sub
  Public Sub RecordAfterRemove(e)
    WScript.Echo "RecordAfterRemove, a summary"
  End Sub
End Class

' Every value change of every row, after the fact.
Class ValueWatcher
  Public Sub ValueAfterChange(e)
    If e.GetRecordChanged() Is Nothing Then
      WScript.Echo "ValueAfterChange, a summary"
    Else
      WScript.Echo "ValueAfterChange: column " & e.GetIndex() & " is now " & _
                   e.GetRecordChanged().GetValueAsString(e.GetIndex())
    End If
  End Sub
End Class

' A listener on one record: its name is fixed once set. The event tells which
' column is about to change; the record still holds the old value.
Class FixedName
  Public Sub ValueBeforeChange(e)
    If e.GetIndex() = 0 And e.GetSource().GetValueAsString(0) <> "" Then e.Stop
  End Sub
End Class

Sub Main()
  Dim columns, stock, rows, values, pear, guard
  Set columns = CreateObject("BrevoRecordList.MutableColumns")
  columns.AddColumn "Name", TEXT_TYPE
  columns.AddColumn "Quantity", INTEGER_TYPE
  Set stock = CreateObject("BrevoRecordList.MutableRecordList")
  stock.Create columns

  Set rows = New RowWatcher
  Set values = New ValueWatcher
  stock.AddRecordListChangeListener rows
  stock.AddRecordListValueChangeListener values

  Set pear = stock.AddRecord()
  pear.SetValueAsString 0, "Pear"
  pear.SetValueAsInt32 1, 40

  Set guard = New FixedName
  pear.AddRecordChangeListener guard
  On Error Resume Next
  pear.SetValueAsString 0, "Prune"
  If Err.Number <> 0 Then WScript.Echo "refused: " & Err.Description
  On Error GoTo 0
  pear.SetValueAsInt32 1, 35

  ' While events are off, changes are only noted; switching them back on
  ' sends one summary per kind of change, without a record.
  stock.EnableMutableRecordListEvents False
  stock.AddRecord().SetValueAsString 0, "Fig"
  stock.AddRecord().SetValueAsString 0, "Plum"
  stock.EnableMutableRecordListEvents True

  ' The fourth row is refused. The record was already made: as it goes it
  ' clears its column collection, the list's own, so a list that has refused
  ' a row needs new columns before its rows are read again.
  On Error Resume Next
  stock.AddRecord
  If Err.Number <> 0 Then WScript.Echo "refused: " & Err.Description
  On Error GoTo 0

  ' Listeners are found again by the script object itself.
  stock.RemoveRecordListChangeListener rows
  stock.RemoveRecordListValueChangeListener values
  pear.RemoveRecordChangeListener guard
End Sub

' cscript under Wine reports nothing for an uncaught error: say it here.
On Error Resume Next
Main
If Err.Number <> 0 Then
  WScript.Echo "error: " & Err.Description
Else
  WScript.Echo "done"
End If
