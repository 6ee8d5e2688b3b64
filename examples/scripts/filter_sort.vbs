' Filtering and sorting a record list with script callbacks (VBScript).
'
'   regsvr32 BrevoRecordList.dll
'   cscript //nologo filter_sort.vbs
'
' A condition is any object with an Evaluate(record) method, a comparator
' any object with a Compare(first, second) method: the library calls them by
' name, so instances of VBScript classes will do.
Option Explicit

Const TEXT_TYPE = 8, REAL_TYPE = 4, INTEGER_TYPE = 10  ' column-type codes

' Keeps the rows with more than Quantity in stock; any non-zero answer keeps
' a row.
Class MoreThan
  Public Quantity
  Public Function Evaluate(record)
    Evaluate = record.GetValueAsInt32(2) > Quantity
  End Function
End Class

' A positive answer puts the first record before the second.
Class DearestFirst
  Public Function Compare(first, second)
    Compare = Sgn(first.GetValueAsDouble(1) - second.GetValueAsDouble(1))
  End Function
End Class

Sub Main()
  Dim columns, fruit, row, record, wellStocked

  ' The schema: three typed columns.
  Set columns = CreateObject("BrevoRecordList.MutableColumns")
  columns.AddColumn "Name", TEXT_TYPE
  columns.AddColumn "Price", REAL_TYPE
  columns.AddColumn "Quantity", INTEGER_TYPE

  ' The table over it, one AddRecord per row.
  Set fruit = CreateObject("BrevoRecordList.MutableRecordList")
  fruit.Create columns
  For Each row In Array(Array("Apple", 0.5, 8), Array("Pear", 2.5, 40), Array("Fig", 0.75, 12), _
                        Array("Plum", 1.2, 25), Array("Kiwi", 0.3, 5))
    Set record = fruit.AddRecord()
    record.SetValueAsString 0, row(0)
    record.SetValueAsDouble 1, row(1)
    record.SetValueAsInt32 2, row(2)
  Next

  Set wellStocked = New MoreThan
  wellStocked.Quantity = 10
  WScript.Echo "Rows with more than 10 in stock:"
  PrintRows fruit.GetFilteredIterator(wellStocked, True)
  WScript.Echo "All rows, dearest first:"
  PrintRows fruit.GetSortedIterator(New DearestFirst, True)
End Sub

' One line per record: its name, quantity and price (the library writes
' reals as text with six decimals).
Sub PrintRows(iterator)
  Dim record
  Do While iterator.HasNext()
    Set record = iterator.Next()
    WScript.Echo "  " & record.GetValueAsString(0) & ", " & record.GetValueAsInt32(2) & " at " & _
                 record.GetValueAsString(1)
  Loop
End Sub

' cscript under Wine reports nothing for an uncaught error: say it here.
On Error Resume Next
Main
If Err.Number <> 0 Then
  WScript.Echo "error: " & Err.Description
Else
  WScript.Echo "done"
End If
