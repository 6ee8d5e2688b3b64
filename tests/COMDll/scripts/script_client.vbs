' The library as a VBScript host sees it, after regsvr32: what the JScript
' client checks, where VBScript's kinds and class instances as callbacks
' differ. Wine's cscript reports nothing for an uncaught error and exits 0, so
' each section runs under the top level's On Error Resume Next; the last line
' is the summary the test reads. Unsigned results (a list's Size, ColumnType)
' are VT_UI4, which VBScript cannot compare: CLng converts them.
Option Explicit

Const STRING_TYPE = 8, DOUBLE_TYPE = 4, INT32_TYPE = 10, INT16_TYPE = 11
Dim passed, failed
passed = 0
failed = 0

' Compared as text, so that numbers match whatever their width (VBScript makes
' 7 an Integer and the library answers a Long).
Sub Check(what, actual, expected)
  If CStr(actual) = CStr(expected) Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo "FAILED " & what & ": got [" & actual & "], expected [" & expected & "]"
  End If
End Sub

' The library's own failures reach a script as DISP_E_EXCEPTION: Err.Number
' is &H80020009 and Err.Description the message. Call right after the
' failing statement, under On Error Resume Next.
Sub CheckError(what, description)
  Check what, Hex(Err.Number) & " " & Err.Description, "80020009 " & description
  Err.Clear
End Sub

' A section ends with no error left over.
Sub Report(name)
  Check name & ": unexpected error", Hex(Err.Number) & " " & Err.Description, "0 "
  Err.Clear
End Sub

' A list over columns given as name, type, name, type..., one row per value.
Function MakeList(columns, values)
  Dim cols, list, i
  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  For i = 0 To UBound(columns) Step 2
    cols.AddColumn columns(i), columns(i + 1)
  Next
  Set list = CreateObject("BrevoRecordList.MutableRecordList")
  list.Create cols
  For Each i In values
    list.AddRecord().SetValueAsInt32 0, i
  Next
  Set MakeList = list
End Function

' The Int32 values of column 0 of every record an iterator hands out.
Function Walk(iterator)
  Walk = ""
  Do While iterator.HasNext()
    If Walk <> "" Then Walk = Walk & ","
    Walk = Walk & iterator.Next().GetValueAsInt32(0)
  Loop
End Function

' Script objects stand in for the condition, comparator and listener
' interfaces: the library calls their methods by name.
' A positive Compare puts the first record first.
Class ByValue
  Public Limit
  Public Function Evaluate(record) : Evaluate = record.GetValueAsInt32(0) > Limit : End Function
  Public Function Compare(first, second) : Compare = first.GetValueAsInt32(0) - second.GetValueAsInt32(0) : End Function
End Class

Class AnswersOne
  Public Function Evaluate(record) : Evaluate = 1 : End Function
End Class

Class Broken
  Public Function Evaluate(record) : Err.Raise 5, "script_client", "condition broke" : End Function
  Public Function Compare(first, second) : Err.Raise 5, "script_client", "comparator broke" : End Function
End Class

' Writes down the notifications it hears; calls Stop on the "Before" ones
' when Stopping is set.
Class Recorder
  ' One name per Public statement: Wine's VBScript parses no lists here.
  Public Heard
  Public Stopping
  Private Sub Note(name, e)
    If Heard <> "" Then Heard = Heard & ","
    Heard = Heard & name
    If Stopping And InStr(name, "Before") > 0 Then e.Stop
  End Sub
  Public Sub RecordBeforeAdd(e) : Note "RecordBeforeAdd", e : End Sub
  Public Sub RecordAfterAdd(e) : Note "RecordAfterAdd", e : End Sub
  Public Sub ValueBeforeChange(e) : Note "ValueBeforeChange", e : End Sub
  Public Sub ColumnBeforeAdd(e) : Note "ColumnBeforeAdd", e : End Sub
  Public Sub ColumnAfterAdd(e) : Note "ColumnAfterAdd " & e.GetColumnChanged().ColumnName, e : End Sub
  Public Sub PropertyChange(e)
    Note e.GetPropertyName() & ": [" & e.GetOldValue() & "] -> [" & e.GetNewValue() & "] now " & _
         e.GetSource().ColumnName, e
  End Sub
End Class

Function NewRecorder(stopping)
  Set NewRecorder = New Recorder
  NewRecorder.Heard = ""
  NewRecorder.Stopping = stopping
End Function

Sub ClassesPropertiesAndErrors()
  Dim progId, cols, column, list, r, bare, size
  For Each progId In Array("BrevoRecordList.MutableColumns", "BrevoRecordList.MutableRecordList", _
                           "GroupMutableRecordList.GroupMutable", "BrevoRecordList.RecordChangeEvent", _
                           "BrevoRecordList.ColumnsChangeEvent", "BrevoRecordList.RecordListChangeEvent", _
                           "RecordListValueChangeEvent.RecordLi", "BrevoRecordList.PropertyChangeEvent", _
                           "BrevoRecordList.RecordListUtils", "BrevoRecordList.RecordsFactory")
    Check progId, IsObject(CreateObject(progId)), True
  Next

  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  Check "an object result", cols.AddColumn("Name", STRING_TYPE).ColumnName, "Name"
  cols.AddColumn "Age", INT32_TYPE
  Check "a property with an argument", CLng(cols.MutableColumn(1).ColumnType), INT32_TYPE
  Set column = cols.MutableColumn(1)
  column.DisplayName = "Age in years"
  Check "property put", cols.Columns.Column(1).DisplayName, "Age in years"

  Set list = MakeList(Array("s", STRING_TYPE, "i", INT32_TYPE, "d", DOUBLE_TYPE, "h", INT16_TYPE), Array())
  Set r = list.AddRecord()
  ' SetValue stores the value's own kind: a small literal is an Integer (16
  ' bits), which an Int32 column refuses; CLng makes it fit.
  r.SetValue 0, "plain"
  r.SetValue 1, CLng(7)
  r.SetValue 2, 0.25
  r.SetValue 3, 7
  Check "SetValue with a String, a Long, a Double and an Integer", _
        r.GetValueAsString(0) & " " & r.GetValueAsString(1) & " " & r.GetValueAsString(2) & " " & r.GetValueAsString(3), _
        "plain 7 0.250000 7"

  ' A failure without a message is a plain code: E_POINTER from a grouped
  ' list made without a source.
  Set bare = CreateObject("GroupMutableRecordList.GroupMutable")
  On Error Resume Next
  r.SetValue 1, 8 : CheckError "SetValue with an Integer into an Int32 column", "New value class type doesn't match the column type."
  size = bare.Size
  Check "a plain failure", Hex(Err.Number) & " " & Err.Description, "80004003 Unknown Error"
  Err.Clear
End Sub

Sub Callbacks()
  Dim list, condition
  Set list = MakeList(Array("n", INT32_TYPE), Array(5, 3, 8, 1))
  Set condition = New ByValue
  condition.Limit = 2
  Check "a script condition filters", Walk(list.GetFilteredIterator(condition, True)), "5,3,8"
  Check "a positive Compare puts the first record first", Walk(list.GetSortedIterator(condition, True)), "8,5,3,1"
  Check "Nothing is no condition", list.GetFilteredIterator(Nothing, True).HasNext(), False
  Check "the filter keeps rows for any non-zero answer", Walk(list.GetFilteredIterator(New AnswersOne, True)), "5,3,8,1"
  Check "Find needs exactly True", list.GetIterator(True).Find(New AnswersOne), False
  condition.Limit = 7
  Check "Find takes True", list.GetIterator(True).Find(condition), True

  On Error Resume Next
  list.GetSortedIterator New Broken, True : CheckError "a failing comparator", "Cannot sort the vector."
  ' The filter passes the condition's own failure on. Wine 8's VBScript reports
  ' the raised error to the host instead of handing it back to the caller of
  ' the script method, so its message does not arrive; only the failure counts.
  list.GetFilteredIterator New Broken, True
  Check "a failing condition in the filter", Err.Number <> 0, True
  Err.Clear
End Sub

Sub Listeners()
  Dim list, rows, record, cols, allowing, column, renames
  Set list = MakeList(Array("n", INT32_TYPE), Array())
  Set rows = NewRecorder(False)
  list.AddRecordListChangeListener rows
  Set record = list.AddRecord()
  Check "AddRecord notifies before and after", rows.Heard, "RecordBeforeAdd,RecordAfterAdd"
  record.SetValueAsInt32 0, 5

  ' A column event starts stopped: a "Before" listener lets the change go on
  ' only by calling Stop.
  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  Set allowing = NewRecorder(True)
  cols.AddColumnsChangeListener allowing
  Set column = cols.AddColumn("a", INT32_TYPE)
  Check "a columns listener that calls Stop lets the column in", allowing.Heard, "ColumnBeforeAdd,ColumnAfterAdd a"
  Set renames = NewRecorder(False)
  column.AddPropertyChangeListener renames
  column.ColumnName = "b"
  column.DisplayName = "Bee"
  Check "renaming announces ""Display Name"" before the change, a new display name ""Name""", renames.Heard, _
        "Display Name: [a] -> [b] now a,Name: [] -> [Bee] now b"

  record.AddRecordChangeListener NewRecorder(True)
  list.RemoveRecordListChangeListener rows
  list.AddRecordListChangeListener NewRecorder(True)
  cols.RemoveColumnsChangeListener allowing
  cols.AddColumnsChangeListener NewRecorder(False)
  On Error Resume Next
  record.SetValueAsInt32 0, 6 : CheckError "a record listener refuses a change", "Failed to change value."
  list.RemoveRecordListChangeListener rows
  CheckError "a listener is found by the script object", "Cannot remove recordlist change listener."
  list.AddRecord : CheckError "a list listener refuses a record", "Failed to add record."
  cols.AddColumn "c", INT32_TYPE : CheckError "one that does not call Stop refuses", "Failed to add column."
  On Error GoTo 0
  Check "the value stays", record.GetValueAsInt32(0), 5
  ' The refused record was made before the veto; letting it go clears its
  ' column collection, which is the list's own.
  Check "the row is not added, and its record took the schema with it", CLng(list.Size) & " " & list.Columns.Size, "1 0"
End Sub

Sub GroupedLists()
  Dim utils, source, groupedMutable
  Set utils = CreateObject("BrevoRecordList.RecordListUtils")
  Set source = MakeList(Array("G.a", INT32_TYPE, "G.b", INT32_TYPE), Array(0))
  Set groupedMutable = utils.GetMutableRecordListByGroup(source, "G")
  groupedMutable.AddRecord
  Check "records added through the grouped list land in the source", CLng(source.Size), 2

  ' Source and grouped lists hold each other through the source's registries
  ' until the client takes the grouped list out of them.
  source.RemoveRecordListChangeListener groupedMutable
  source.RemoveRecordListValueChangeListener groupedMutable
  source.Columns.RemoveColumnsChangeListener groupedMutable
  On Error Resume Next
  source.RemoveRecordListChangeListener groupedMutable
  CheckError "the grouped list was registered once", "Cannot remove recordlist change listener."
  utils.SaveToFile
  CheckError "SaveToFile with nothing", "Method SaveToFile not yet implemented."
  utils.SaveToFile source, "out.txt", 3
  CheckError "SaveToFile with anything", "Method SaveToFile not yet implemented."
End Sub

On Error Resume Next
ClassesPropertiesAndErrors : Report "classes by ProgID, their properties, methods and errors by name"
Callbacks : Report "iterators with script callbacks"
Listeners : Report "listeners"
GroupedLists : Report "grouped lists and their lifetime"
On Error GoTo 0

WScript.Echo passed & " passed, " & failed & " failed"
