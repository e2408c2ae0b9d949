DELETE FROM dbo.Orders WHERE OrderDate < DATEADD(year, -7, GETDATE());
GO
DROP TABLE IF EXISTS dbo.TempImport;
GO
