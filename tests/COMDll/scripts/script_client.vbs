' The library as a VBScript host sees it: every creatable class made by its
' ProgID and called by name through IDispatch. Run by cscript after regsvr32.
'
' Wine's cscript reports nothing for an uncaught error and exits 0, so each
' section runs under the top level's On Error Resume Next and a failure it did
' not expect is counted; the last line is the summary the test command reads.
Option Explicit

Const STRING_TYPE = 8, BOOL_TYPE = 2, FLOAT_TYPE = 3, DOUBLE_TYPE = 4, INT32_TYPE = 10, INT16_TYPE = 11, BYTE_TYPE = 13

Dim passed, failed
passed = 0
failed = 0

Sub Fail(what)
  failed = failed + 1
  WScript.Echo "FAILED " & what
End Sub

Function Show(value)
  If IsObject(value) Then
    Show = "<object>"
  Else
    Show = TypeName(value) & " " & value
  End If
End Function

' Numbers compare by value whatever their width (VBScript makes 7 an Integer
' and the library answers a Long); text and numbers never match.
Sub Check(what, actual, expected)
  If Not IsObject(actual) And (VarType(actual) = vbString) = (VarType(expected) = vbString) Then
    If actual = expected Then
      passed = passed + 1
      Exit Sub
    End If
  End If
  Fail what & ": got [" & Show(actual) & "], expected [" & Show(expected) & "]"
End Sub

' A boolean answer: its kind, and set or not (the library's stopped flags are
' 1, which VBScript's True, -1, does not equal).
Sub CheckFlag(what, actual, expected)
  Dim isSet
  isSet = False
  If actual Then isSet = True
  If TypeName(actual) = "Boolean" And isSet = expected Then
    passed = passed + 1
  Else
    Fail what & ": got [" & Show(actual) & "], expected [" & expected & "]"
  End If
End Sub

' The library's own failures reach a script as DISP_E_EXCEPTION: Err.Number
' is &H80020009 and Err.Description the message. Call right after the
' failing statement, under On Error Resume Next.
Sub CheckError(what, description)
  CheckErrorNumber what, description, &H80020009
End Sub

Sub CheckErrorNumber(what, description, number)
  If Err.Number = 0 Then
    Fail what & ": no error"
  Else
    Check what & " (description)", Err.Description, description
    Check what & " (number)", Hex(Err.Number), Hex(number)
  End If
  Err.Clear
End Sub

Sub Report(name)
  If Err.Number <> 0 Then Fail name & ": unexpected error " & Hex(Err.Number) & " " & Err.Description
  Err.Clear
End Sub

'' Unsigned results (a record list's Size, ColumnType, the group counts) are
' VT_UI4, which VBScript cannot compare or compute with; CLng converts them.

' A list over columns given as name, type, name, type...
Function MakeList(columns)
  Dim cols, i
  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  For i = 0 To UBound(columns) Step 2
    cols.AddColumn columns(i), columns(i + 1)
  Next
  Set MakeList = CreateObject("BrevoRecordList.MutableRecordList")
  MakeList.Create cols
End Function

' The Int32 values of column 0 of every record an iterator hands out.
Function Walk(iterator)
  Dim values
  values = ""
  Do While iterator.HasNext()
    If values <> "" Then values = values & ","
    values = values & iterator.Next().GetValueAsInt32(0)
  Loop
  Walk = values
End Function

' Script objects stand in for the condition, comparator and listener
' interfaces: the library calls their methods by name.
Class Above
  Public Limit
  Public Function Evaluate(record)
    Evaluate = record.GetValueAsInt32(0) > Limit
  End Function
End Class

Class AnswersOne
  Public Function Evaluate(record)
    Evaluate = 1
  End Function
End Class

Class IsEight
  Public Function Evaluate(record)
    Evaluate = record.GetValueAsInt32(0) = 8
  End Function
End Class

' A positive answer puts the first record first.
Class Descending
  Public Function Compare(first, second)
    Compare = first.GetValueAsInt32(0) - second.GetValueAsInt32(0)
  End Function
End Class

Class Broken
  Public Function Evaluate(record)
    Err.Raise 5, "script_client", "condition broke"
  End Function
  Public Function Compare(first, second)
    Err.Raise 5, "script_client", "comparator broke"
  End Function
End Class

' Writes down the notifications it hears; calls Stop on the "Before" ones
' when Stopping is set. It leaves out the methods it does not need.
Class Recorder
  ' One name per Public statement: Wine's VBScript parses no lists here.
  Public Heard
  Public Stopping
  Public Source
  Public Changed
  Public Index
  Private Sub Class_Initialize
    Heard = ""
    Stopping = False
  End Sub
  Private Sub Note(name, e)
    If Heard <> "" Then Heard = Heard & ","
    Heard = Heard & name
    If Stopping And InStr(name, "Before") > 0 Then e.Stop
  End Sub
  Public Sub RecordBeforeAdd(e)
    Note "RecordBeforeAdd", e
  End Sub
  Public Sub RecordAfterAdd(e)
    Note "RecordAfterAdd", e
    Set Source = e.GetSource()
    Set Changed = e.GetRecordChanged()
  End Sub
  Public Sub RecordAfterRemove(e)
    Note "RecordAfterRemove", e
  End Sub
  Public Sub ValueBeforeChange(e)
    Note "ValueBeforeChange", e
  End Sub
  Public Sub ValueAfterChange(e)
    Note "ValueAfterChange", e
    Index = e.GetIndex()
  End Sub
  Public Sub ColumnBeforeAdd(e)
    Note "ColumnBeforeAdd", e
  End Sub
  Public Sub ColumnAfterAdd(e)
    Note "ColumnAfterAdd " & e.GetColumnChanged().ColumnName, e
  End Sub
  Public Sub PropertyChange(e)
    Note e.GetPropertyName() & ": [" & e.GetOldValue() & "] -> [" & e.GetNewValue() & "] now " & _
         e.GetSource().ColumnName, e
  End Sub
End Class

Function NewRecorder(stopping)
  Set NewRecorder = New Recorder
  NewRecorder.Stopping = stopping
End Function

Sub EveryClass()
  Dim progIds, progId, versioned, made
  progIds = Array("BrevoRecordList.MutableColumns", "BrevoRecordList.MutableRecordList", _
                  "GroupMutableRecordList.GroupMutable", "BrevoRecordList.RecordChangeEvent", _
                  "BrevoRecordList.ColumnsChangeEvent", "BrevoRecordList.RecordListChangeEvent", _
                  "RecordListValueChangeEvent.RecordLi", "BrevoRecordList.PropertyChangeEvent", _
                  "BrevoRecordList.RecordListUtils", "BrevoRecordList.RecordsFactory")
  For Each progId In progIds
    If Left(progId, 16) = "BrevoRecordList." Then versioned = progId & ".1" Else versioned = progId & ".1.0"
    Check progId, IsObject(CreateObject(progId)), True
    Check versioned, IsObject(CreateObject(versioned)), True
  Next
  On Error Resume Next
  Set made = CreateObject("BrevoRecordList.GroupMutableRecordList")
  Check "the grouped list has no BrevoRecordList ProgID", Err.Number <> 0, True
  Err.Clear
End Sub

Sub Schema()
  Dim cols, name, age, other
  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  Check "empty size", cols.Size, 0
  Check "IndexOf on an empty schema", cols.IndexOf("Name"), -1
  Set name = cols.AddColumn("Name", STRING_TYPE)
  cols.AddColumn "Age", INT32_TYPE
  Check "AddColumn returns the column", name.ColumnName, "Name"
  On Error Resume Next
  cols.AddColumn "Name", INT32_TYPE
  CheckError "a second Name", "Name property must be unique."
  On Error GoTo 0
  Check "the refused column is not added", cols.Size, 2
  cols.AddColumn "name", INT32_TYPE
  Check "names are case-sensitive", cols.Size, 3
  Check "IndexOf", cols.IndexOf("Age"), 1
  Check "IndexOf a missing name", cols.IndexOf("age"), -1
  Check "a property with an argument", CLng(cols.MutableColumn(1).ColumnType), INT32_TYPE

  Set age = cols.MutableColumn(1)
  age.DisplayName = "Age in years"
  Check "property put", age.DisplayName, "Age in years"
  age.ColumnName = "Years"
  Check "rename", cols.IndexOf("Years"), 1
  Check "the read-only column shows the rename", age.Column.ColumnName, "Years"
  Check "the read-only collection", cols.Columns.Column(1).DisplayName, "Age in years"
  On Error Resume Next
  cols.MutableColumn 7
  CheckError "an index beyond the size", "There is no such index : 7"
  On Error GoTo 0

  cols.RemoveColumn 0
  Check "RemoveColumn", cols.MutableColumn(0).ColumnName, "Years"
  Set other = CreateObject("BrevoRecordList.MutableColumns")
  Check "collections of different sizes differ", cols.CompareTo(other), -1
  On Error Resume Next
  cols.AddColumn "x"
  Check "a missing argument is refused", Err.Number <> 0, True
  Err.Clear
  On Error GoTo 0
  Check "and adds nothing", cols.Size, 2
End Sub

Sub TypedValues()
  Dim list, r, view
  Set list = MakeList(Array("s", STRING_TYPE, "i", INT32_TYPE, "d", DOUBLE_TYPE, "b", BOOL_TYPE, "f", FLOAT_TYPE, _
                            "h", INT16_TYPE, "y", BYTE_TYPE))
  Set r = list.AddRecord()

  r.SetValueAsString 0, "12abc"
  Check "text to int reads the numeric prefix", r.GetValueAsInt32(0), 12
  CheckFlag "text never reads as true", r.GetValueAsBoolean(0), False
  Check "text to double", r.GetValueAsDouble(0), 12
  Check "text to byte is its first character", r.GetValueAsByte(0), &H31

  r.SetValueAsInt32 1, 70000
  Check "int to short keeps the low 16 bits", r.GetValueAsInt16(1), 4464
  CheckFlag "int to boolean keeps the low 16 bits", r.GetValueAsBoolean(1), True
  Check "int to string", r.GetValueAsString(1), "70000"
  Check "GetValue", r.GetValue(1), 70000
  Check "GetValueByName", r.GetValueByName("i"), 70000
  Check "GetValueByName with an unknown name is empty", IsEmpty(r.GetValueByName("I")), True
  On Error Resume Next
  r.SetValueByName "I", 1
  CheckError "SetValueByName with an unknown name", "Column name doesn't found."
  On Error GoTo 0
  r.SetValueAsInt32 1, "42"
  Check "arguments are coerced to the parameter type", r.GetValueAsInt32(1), 42

  r.SetValueAsDouble 2, -2.9
  Check "double to int truncates", r.GetValueAsInt32(2), -2
  Check "double to string has six decimals", r.GetValueAsString(2), "-2.900000"

  r.SetValueAsBoolean 3, True
  Check "true to int", r.GetValueAsInt32(3), -1
  Check "true to byte is the minus of -1", r.GetValueAsByte(3), &H2D
  On Error Resume Next
  r.GetValueAsString 3
  CheckError "boolean to string", "Cannot convert to string."
  On Error GoTo 0

  r.SetValueAsFloat 4, 1.5
  Check "float", r.GetValueAsFloat(4), 1.5
  Check "float to string", r.GetValueAsString(4), "1.500000"

  r.SetValueAsInt16 5, -3
  Check "short to byte is the minus sign", r.GetValueAsByte(5), &H2D

  r.SetValueAsByte 6, 200
  Check "byte to string", r.GetValueAsString(6), "200"
  On Error Resume Next
  r.GetValueAsBoolean 6
  CheckError "byte to boolean", "Cannot convert to boolean."
  r.SetValueAsInt32 0, 5
  CheckError "a value of the wrong kind", "New value class type doesn't match the column type."
  r.SetValueAsInt64 1, 5
  CheckError "the 64-bit setter stores nothing", "New value class type doesn't match the column type."
  On Error GoTo 0
  Check "and the cell keeps its value", r.GetValueAsInt32(1), 42

  ' SetValue stores the value's own kind: a small VBScript literal is an
  ' Integer (16 bits), which an Int32 column refuses; CLng makes it fit.
  r.SetValue 0, "plain"
  r.SetValue 1, CLng(7)
  r.SetValue 2, 0.25
  r.SetValue 5, 7
  Check "SetValue with a string", r.GetValueAsString(0), "plain"
  Check "SetValue with a Long", r.GetValueAsInt32(1), 7
  Check "SetValue with a Double", r.GetValueAsDouble(2), 0.25
  Check "SetValue with an Integer into an Int16 column", r.GetValueAsInt16(5), 7
  On Error Resume Next
  r.SetValue 1, 8
  CheckError "SetValue with an Integer into an Int32 column", "New value class type doesn't match the column type."
  On Error GoTo 0

  Set view = r.Record
  Check "the read-only record", view.GetValueAsString(0), "plain"
  On Error Resume Next
  view.SetValueAsInt32 1, 1
  Check "the read-only record has no setters", Err.Number <> 0, True
  Err.Clear
  On Error GoTo 0
  Check "records compare equal to themselves", r.CompareTo(r), 0
End Sub

Sub Iterators()
  Dim list, i, copy, live, it, view, constIterator, first
  Set list = MakeList(Array("n", INT32_TYPE))
  On Error Resume Next
  list.GetIterator(True).Next
  CheckError "Next on an empty list", "The record iterator is empty."
  On Error GoTo 0
  For i = 1 To 3
    list.AddRecord().SetValueAsInt32 0, i
  Next
  Check "Size", CLng(list.Size), 3
  Check "a synchronized iterator walks in order of addition", Walk(list.GetIterator(True)), "1,2,3"
  CheckFlag "IsSynchronized", list.GetIterator(True).IsSynchronized(), True

  Set copy = list.GetIterator(False)
  Set live = list.GetIterator(True)
  list.AddRecord().SetValueAsInt32 0, 4
  Check "an unsynchronized iterator keeps its copy", Walk(copy), "1,2,3"
  Check "a synchronized one sees the new row", Walk(live), "1,2,3,4"

  Set it = list.GetIterator(True)
  it.Next
  it.Remove
  Check "Remove takes the row out of the list", CLng(list.Size), 3
  Check "the rows after it move up", Walk(list.GetIterator(True)), "2,3,4"

  Set view = list.RecordList
  Check "the read-only list", CLng(view.Size), 3
  Set constIterator = view.GetIterator(True)
  Set first = constIterator.Next()
  Check "a const iterator hands out records", first.GetValueAsInt32(0), 2
  On Error Resume Next
  first.SetValueAsInt32 0, 9
  Check "read-only records", Err.Number <> 0, True
  Err.Clear
  constIterator.Remove
  CheckError "Remove on a const iterator", "Unsupported Operation Remove."
  On Error GoTo 0

  CheckFlag "no condition filters everything out", list.GetFilteredIterator(Nothing, True).HasNext(), False
  CheckFlag "Find without a condition", list.GetIterator(True).Find(Nothing), False
  On Error Resume Next
  list.GetSortedIterator Nothing, True
  CheckError "sorting without a comparator", "Cannot sort the vector."
  On Error GoTo 0
End Sub

Sub RecordLists()
  Dim unbound, five, three, i
  Set unbound = CreateObject("BrevoRecordList.MutableRecordList")
  unbound.Create CreateObject("BrevoRecordList.MutableColumns")
  On Error Resume Next
  unbound.AddRecord
  CheckError "AddRecord without columns", "Cannot add record becasue is columns are empty."
  On Error GoTo 0

  Set five = MakeList(Array("n", INT32_TYPE))
  Set three = MakeList(Array("n", INT32_TYPE))
  For i = 1 To 5
    five.AddRecord
  Next
  For i = 1 To 3
    three.AddRecord
  Next
  Check "CompareTo of lists of different sizes is the own size", five.CompareTo(three), 5
  five.Clear
  Check "Clear empties the rows", CLng(five.Size), 0
  Check "and the columns", five.Columns.Size, 0
End Sub

Sub Callbacks()
  Dim list, value, condition, it
  Set list = MakeList(Array("n", INT32_TYPE))
  For Each value In Array(5, 3, 8, 1)
    list.AddRecord().SetValueAsInt32 0, value
  Next
  Set condition = New Above
  condition.Limit = 2
  Check "a script condition filters", Walk(list.GetFilteredIterator(condition, True)), "5,3,8"
  Check "a positive Compare puts the first record first", Walk(list.GetSortedIterator(New Descending, True)), "8,5,3,1"
  condition.Limit = 4
  Check "the read-only list filters too", Walk(list.RecordList.GetFilteredIterator(condition, True)), "5,8"

  Check "the filter keeps rows for any non-zero answer", Walk(list.GetFilteredIterator(New AnswersOne, True)), "5,3,8,1"
  CheckFlag "Find needs exactly True", list.GetIterator(True).Find(New AnswersOne), False
  Set it = list.GetIterator(True)
  CheckFlag "Find with a script condition", it.Find(New IsEight), True
  Check "Find does not start the walk: Next gives the first row", it.Next().GetValueAsInt32(0), 5

  On Error Resume Next
  list.GetSortedIterator New Broken, True
  CheckError "a failing comparator", "Cannot sort the vector."
  list.GetIterator(True).Find New Broken
  CheckError "a failing condition in Find", "Failed in iterator find."
  ' The filter passes the condition's own failure on. Wine 8's VBScript
  ' reports the raised error to the host instead of handing it back to the
  ' caller of the script method, so its message does not arrive here; only
  ' the failure is checked.
  list.GetFilteredIterator New Broken, True
  Check "a failing condition in the filter", Err.Number <> 0, True
  Err.Clear
End Sub

Sub Listeners()
  Dim list, rows, record, values, size, cols, silent, allowing, column, renames
  Set list = MakeList(Array("n", INT32_TYPE))
  Set rows = NewRecorder(False)
  list.AddRecordListChangeListener rows
  Set record = list.AddRecord()
  Check "AddRecord notifies before and after", rows.Heard, "RecordBeforeAdd,RecordAfterAdd"
  Check "the event's source is the list", rows.Source Is list, True
  Check "the event carries the new record", rows.Changed Is record, True

  Set values = NewRecorder(False)
  list.AddRecordListValueChangeListener values
  record.SetValueAsInt32 0, 5
  record.SetValueAsInt32 0, 5
  Check "a record's change reaches the list's value listeners once", values.Heard, "ValueBeforeChange,ValueAfterChange"
  Check "with the column index", values.Index, 0

  record.AddRecordChangeListener NewRecorder(True)
  On Error Resume Next
  record.SetValueAsInt32 0, 6
  CheckError "a record listener refuses a change", "Failed to change value."
  On Error GoTo 0
  Check "the value stays", record.GetValueAsInt32(0), 5

  list.RemoveRecordListChangeListener rows
  rows.Heard = ""
  list.AddRecord
  Check "a removed listener hears nothing", rows.Heard, ""
  On Error Resume Next
  list.RemoveRecordListChangeListener rows
  CheckError "removing it again", "Cannot remove recordlist change listener."
  list.RecordList.RemoveRecordListValueChangeListener rows
  CheckError "removing from the read-only list's value registry", "Cannot remove record value change listener."
  On Error GoTo 0

  list.AddRecordListChangeListener rows
  list.EnableMutableRecordListEvents False
  list.AddRecord
  list.AddRecord
  Check "nothing while events are off", rows.Heard, ""
  list.EnableMutableRecordListEvents True
  Check "one summary when they come back", rows.Heard, "RecordAfterAdd,RecordAfterRemove"

  size = CLng(list.Size)
  list.AddRecordListChangeListener NewRecorder(True)
  On Error Resume Next
  list.AddRecord
  CheckError "a list listener refuses a record", "Failed to add record."
  On Error GoTo 0
  Check "the row is not added", CLng(list.Size), size
  ' The refused record was made before the veto; letting it go clears its
  ' column collection, which is the list's own.
  Check "and the refused record took the schema with it", list.Columns.Size, 0

  ' A column event starts stopped: a "Before" listener lets the change go on
  ' only by calling Stop.
  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  Set silent = NewRecorder(False)
  cols.AddColumnsChangeListener silent
  On Error Resume Next
  cols.AddColumn "a", INT32_TYPE
  CheckError "a columns listener that does not call Stop refuses", "Failed to add column."
  On Error GoTo 0
  Check "the column is not added", cols.Size, 0
  cols.RemoveColumnsChangeListener silent
  Set allowing = NewRecorder(True)
  cols.AddColumnsChangeListener allowing
  Set column = cols.AddColumn("a", INT32_TYPE)
  Check "one that calls Stop lets it through", allowing.Heard, "ColumnBeforeAdd,ColumnAfterAdd a"

  Set renames = NewRecorder(False)
  column.AddPropertyChangeListener renames
  column.ColumnName = "b"
  column.DisplayName = "Bee"
  Check "renaming announces ""Display Name"" before the change, a new display name ""Name""", renames.Heard, _
        "Display Name: [a] -> [b] now a,Name: [] -> [Bee] now b"
End Sub

Sub Factory()
  Dim fresh, cols, factory, record
  Set fresh = CreateObject("BrevoRecordList.RecordsFactory")
  On Error Resume Next
  fresh.CreateMutableRecord
  Check "a first request without columns fails", Err.Number <> 0, True
  Err.Clear
  On Error GoTo 0

  Set cols = CreateObject("BrevoRecordList.MutableColumns")
  cols.AddColumn "a", INT32_TYPE
  Set factory = CreateObject("BrevoRecordList.RecordsFactory")
  Set record = factory.CreateMutableRecordFromColumns(cols)
  record.SetValueAsInt32 0, 5
  Check "a free-standing record", record.GetValueAsInt32(0), 5
  Check "later columns are ignored", _
        factory.CreateMutableRecordFromColumns(CreateObject("BrevoRecordList.MutableColumns")).Columns.Size, 1
End Sub

Sub EventsMadeByScripts()
  Dim source, recordEvent, columnsEvent, listEvent, valueEvent, propertyEvent
  Set source = CreateObject("BrevoRecordList.MutableColumns")
  Set recordEvent = CreateObject("BrevoRecordList.RecordChangeEvent")
  recordEvent.Initialize source, 3
  Check "record event index", recordEvent.GetIndex(), 3
  Check "record event source", recordEvent.GetSource() Is source, True
  CheckFlag "record event not stopped", recordEvent.IsStopped(), False
  recordEvent.Stop
  CheckFlag "record event stopped", recordEvent.IsStopped(), True

  Set columnsEvent = CreateObject("BrevoRecordList.ColumnsChangeEvent")
  columnsEvent.Initialize source, Nothing
  CheckFlag "a columns event starts stopped", columnsEvent.IsStopped(), True
  columnsEvent.Stop
  CheckFlag "and Stop clears it", columnsEvent.IsStopped(), False
  Check "no column", columnsEvent.GetColumnChanged() Is Nothing, True

  Set listEvent = CreateObject("BrevoRecordList.RecordListChangeEvent")
  listEvent.Initialize source, Nothing
  CheckFlag "list event not stopped", listEvent.IsStopped(), False

  Set valueEvent = CreateObject("RecordListValueChangeEvent.RecordLi")
  valueEvent.Initialize source, Nothing, -1
  Check "value event index", valueEvent.GetIndex(), -1

  Set propertyEvent = CreateObject("BrevoRecordList.PropertyChangeEvent")
  propertyEvent.Initialize source, "Name", "old", "new"
  Check "property name", propertyEvent.GetPropertyName(), "Name"
  Check "old value", propertyEvent.GetOldValue(), "old"
  Check "new value", propertyEvent.GetNewValue(), "new"
  Check "no propagation id at first", propertyEvent.GetPropagationId() Is Nothing, True
  propertyEvent.SetPropagationId source
  Check "propagation id", propertyEvent.GetPropagationId() Is source, True
End Sub

Sub GroupingAndUtilities()
  Dim utils, mixed, source, grouped, groupedMutable, view, values, bare, size
  Set utils = CreateObject("BrevoRecordList.RecordListUtils")
  Set mixed = MakeList(Array("A.x", INT32_TYPE, "B.y", INT32_TYPE, "A.z", STRING_TYPE, "w", INT32_TYPE))
  Check "GetMutableGroupCount", CLng(utils.GetMutableGroupCount(mixed)), 2
  Check "GetMutableGroupName 0", utils.GetMutableGroupName(mixed, 0), "A"
  Check "GetMutableGroupName 1", utils.GetMutableGroupName(mixed, 1), "B"
  Check "GetGroupCount of the read-only list", CLng(utils.GetGroupCount(mixed.RecordList)), 2
  Check "GetGroupName of the read-only list", utils.GetGroupName(mixed.RecordList, 1), "B"
  Check "groups are case-sensitive", CLng(utils.GetMutableGroupCount(MakeList(Array("a.x", INT32_TYPE, "A.y", INT32_TYPE)))), 2
  Check "names without a group", CLng(utils.GetMutableGroupCount(MakeList(Array("x", INT32_TYPE)))), 0
  On Error Resume Next
  utils.GetMutableRecordListByGroup mixed, "A"
  CheckError "a group that not every column belongs to", "No such group found in recordlist."
  utils.SaveToFile mixed, "table.txt"
  CheckError "SaveToFile", "Method SaveToFile not yet implemented."
  On Error GoTo 0

  Set source = MakeList(Array("G.a", INT32_TYPE, "G.b", INT32_TYPE))
  source.AddRecord().SetValueAsInt32 1, 7
  Set view = source.RecordList
  Set grouped = utils.GetRecordListByGroup(view, "G")
  Check "the grouped list copies the columns", grouped.Columns.Column(1).ColumnName, "G.b"
  Check "grouped records read the source", grouped.GetIterator(True).Next().GetValueAsInt32(1), 7
  source.AddRecord
  Check "the grouped size follows the source", CLng(grouped.Size), 2
  Set values = NewRecorder(False)
  grouped.AddRecordListValueChangeListener values
  source.GetIterator(True).Next().SetValueAsInt32 1, 9
  Check "a grouped list passes its source's value changes on", values.Heard & " " & values.Index, "ValueBeforeChange,ValueAfterChange 1"

  Set groupedMutable = utils.GetMutableRecordListByGroup(source, "G")
  groupedMutable.AddRecord
  Check "records added through the grouped list land in the source", CLng(source.Size), 3
  On Error Resume Next
  groupedMutable.Create CreateObject("BrevoRecordList.MutableColumns")
  CheckError "Create on a grouped list", "Cannot make add operation on grouped object."
  groupedMutable.Clear
  CheckError "Clear on a grouped list", "Cannot make remove operation on grouped object."
  On Error GoTo 0

  ' Source and grouped lists hold each other through the source's registries
  ' until the client takes the grouped list out of them.
  source.RemoveRecordListChangeListener groupedMutable
  source.RemoveRecordListValueChangeListener groupedMutable
  source.Columns.RemoveColumnsChangeListener groupedMutable
  view.RemoveRecordListChangeListener grouped
  view.RemoveRecordListValueChangeListener grouped
  view.Columns.RemoveColumnsChangeListener grouped
  On Error Resume Next
  source.RemoveRecordListChangeListener groupedMutable
  CheckError "the grouped list was registered once", "Cannot remove recordlist change listener."
  On Error GoTo 0

  ' Without a source there is nothing to show: E_POINTER, with no message.
  Set bare = CreateObject("GroupMutableRecordList.GroupMutable")
  On Error Resume Next
  size = bare.Size
  CheckErrorNumber "a grouped list made without a source", "Unknown Error", &H80004003
  On Error GoTo 0
End Sub

On Error Resume Next
EveryClass
Report "every creatable class by both ProgIDs"
Schema
Report "schema"
TypedValues
Report "typed values and conversions"
Iterators
Report "iterators"
RecordLists
Report "record lists"
Callbacks
Report "filter and sort with script callbacks"
Listeners
Report "listeners"
Factory
Report "factory"
EventsMadeByScripts
Report "events made by scripts"
GroupingAndUtilities
Report "grouping and utilities"
On Error GoTo 0

WScript.Echo passed & " passed, " & failed & " failed"
