// A script listener that re-enters the library from its own notification:
// each value it hears sets the next one. The library refuses the innermost
// call past its nesting limit with one message, and the script engine's
// stack holds out until then.
var INTEGER = 10;
var passed = 0, failed = 0;
function check(what, actual, expected) {
  if (actual === expected) passed++;
  else { failed++; WScript.Echo("FAILED " + what + ": got [" + actual + "], expected [" + expected + "]"); }
}

var columns = new ActiveXObject("BrevoRecordList.MutableColumns");
columns.AddColumn("n", INTEGER);
var list = new ActiveXObject("BrevoRecordList.MutableRecordList");
list.Create(columns);
var record = list.AddRecord();
var depth = 0, deepest = 0, innermost = "";
record.AddRecordChangeListener({
  ValueAfterChange: function (e) {
    depth++;
    if (depth > deepest) deepest = depth;
    try { record.SetValueAsInt32(0, record.GetValueAsInt32(0) + 1); } catch (err) { if (innermost === "") innermost = err.description; }
    depth--;
  }
});
try { record.SetValueAsInt32(0, 1); } catch (err) { check("the outermost call", err.description, ""); }
check("innermost refusal", innermost,
      "Too many nested calls: a listener, condition or comparator re-entered the library too deeply.");
check("levels reached", deepest, 128);
check("the values stored", record.GetValueAsInt32(0), 128);
WScript.Echo(passed + " passed, " + failed + " failed");
