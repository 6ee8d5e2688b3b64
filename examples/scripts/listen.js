// Script listeners on a record list and its records (JScript).
//
//   regsvr32 BrevoRecordList.dll
//   cscript //nologo listen.js
//
// A listener is any object with the notification methods it wants to hear
// (RecordBeforeAdd, ValueAfterChange, ...): the library calls them by name
// and skips the ones it leaves out. A "Before" notification may refuse the
// change by calling Stop on its event; the change then fails with the
// library's message.

var TEXT = 8, INTEGER = 10;  // column-type codes

function main() {
  var columns = new ActiveXObject("BrevoRecordList.MutableColumns");
  columns.AddColumn("Name", TEXT);
  columns.AddColumn("Quantity", INTEGER);
  var stock = new ActiveXObject("BrevoRecordList.MutableRecordList");
  stock.Create(columns);

  // Rows being added; the list takes at most three.
  var rows = {
    RecordBeforeAdd: function (e) {
      var size = e.GetSource().Size;
      WScript.Echo("RecordBeforeAdd: the list has " + size + " rows");
      if (size >= 3) e.Stop();
    },
    RecordAfterAdd: function (e) {
      // A summary, sent when events are switched back on, carries no record.
      WScript.Echo("RecordAfterAdd" + (e.GetRecordChanged() === null ? ", a summary" : ""));
    },
    RecordAfterRemove: function (e) { WScript.Echo("RecordAfterRemove, a summary"); }
  };
  // Every value change of every row, after the fact.
  var values = {
    ValueAfterChange: function (e) {
      var record = e.GetRecordChanged();
      if (record === null) WScript.Echo("ValueAfterChange, a summary");
      else WScript.Echo("ValueAfterChange: column " + e.GetIndex() + " is now " + record.GetValueAsString(e.GetIndex()));
    }
  };
  stock.AddRecordListChangeListener(rows);
  stock.AddRecordListValueChangeListener(values);

  var pear = stock.AddRecord();
  pear.SetValueAsString(0, "Pear");
  pear.SetValueAsInt32(1, 40);

  // A listener on one record: its name is fixed once set. The event tells
  // which column is about to change; the record still holds the old value.
  var fixedName = {
    ValueBeforeChange: function (e) {
      if (e.GetIndex() === 0 && e.GetSource().GetValueAsString(0) !== "") e.Stop();
    }
  };
  pear.AddRecordChangeListener(fixedName);
  try {
    pear.SetValueAsString(0, "Prune");
  } catch (e) {
    WScript.Echo("refused: " + e.description);
  }
  pear.SetValueAsInt32(1, 35);

  // While events are off, changes are only noted; switching them back on
  // sends one summary per kind of change, without a record.
  stock.EnableMutableRecordListEvents(false);
  stock.AddRecord().SetValueAsString(0, "Fig");
  stock.AddRecord().SetValueAsString(0, "Plum");
  stock.EnableMutableRecordListEvents(true);

  // The fourth row is refused. The record was already made: as it goes it
  // clears its column collection, the list's own, so a list that has refused
  // a row needs new columns before its rows are read again.
  try {
    stock.AddRecord();
  } catch (e) {
    WScript.Echo("refused: " + e.description);
  }

  // Listeners are found again by the script object itself.
  stock.RemoveRecordListChangeListener(rows);
  stock.RemoveRecordListValueChangeListener(values);
  pear.RemoveRecordChangeListener(fixedName);
}

// cscript under Wine reports nothing for an uncaught error: say it here.
try {
  main();
  WScript.Echo("done");
} catch (e) {
  WScript.Echo("error: " + e.description);
}
