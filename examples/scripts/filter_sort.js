// Filtering and sorting a record list with script callbacks (JScript).
//
//   regsvr32 BrevoRecordList.dll
//   cscript //nologo filter_sort.js
//
// A condition is any object with an Evaluate(record) method, a comparator
// any object with a Compare(first, second) method: the library calls them by
// name, so plain JScript objects will do.

var TEXT = 8, REAL = 4, INTEGER = 10;  // column-type codes

function main() {
  // The schema: three typed columns.
  var columns = new ActiveXObject("BrevoRecordList.MutableColumns");
  columns.AddColumn("Name", TEXT);
  columns.AddColumn("Price", REAL);
  columns.AddColumn("Quantity", INTEGER);

  // The table over it, one AddRecord per row.
  var fruit = new ActiveXObject("BrevoRecordList.MutableRecordList");
  fruit.Create(columns);
  var rows = [["Apple", 0.5, 8], ["Pear", 2.5, 40], ["Fig", 0.75, 12], ["Plum", 1.2, 25], ["Kiwi", 0.3, 5]];
  for (var i = 0; i < rows.length; i++) {
    var record = fruit.AddRecord();
    record.SetValueAsString(0, rows[i][0]);
    record.SetValueAsDouble(1, rows[i][1]);
    record.SetValueAsInt32(2, rows[i][2]);
  }

  // Keeps the rows with more than 10 in stock; any non-zero answer keeps a row.
  var wellStocked = {
    Evaluate: function (record) { return record.GetValueAsInt32(2) > 10; }
  };
  // A positive answer puts the first record before the second: first minus
  // second gives the dearest first (a fractional answer counts by its sign).
  var dearestFirst = {
    Compare: function (first, second) { return first.GetValueAsDouble(1) - second.GetValueAsDouble(1); }
  };

  WScript.Echo("Rows with more than 10 in stock:");
  print(fruit.GetFilteredIterator(wellStocked, true));
  WScript.Echo("All rows, dearest first:");
  print(fruit.GetSortedIterator(dearestFirst, true));
}

// One line per record: its name, quantity and price (the library writes
// reals as text with six decimals).
function print(iterator) {
  while (iterator.HasNext()) {
    var record = iterator.Next();
    WScript.Echo("  " + record.GetValueAsString(0) + ", " + record.GetValueAsInt32(2) + " at " +
                 record.GetValueAsString(1));
  }
}

// cscript under Wine reports nothing for an uncaught error: say it here.
try {
  main();
  WScript.Echo("done");
} catch (e) {
  WScript.Echo("error: " + e.description);
}
